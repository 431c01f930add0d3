import QtQuick
import QtQuick.Templates as T
import Orvane

// A long list that the keyboard can walk: arrows, pages, Home and End; Space or Enter acts on the row, left and right
// fold it. Rows are reused, so a million of them scroll as ten do.
ListView {
    id: root

    // Whether the current row shows that it has the keyboard; the pointer takes it away.
    property bool showsCurrent: false
    property string label: ""
    signal rowToggled(int row)
    signal rowFolded(int row, bool open)

    readonly property int pageRows: Math.max(1, Math.floor(height / 51) - 1)

    function goTo(row: int) {
        showsCurrent = true;
        currentIndex = Math.max(0, Math.min(count - 1, row));
        positionViewAtIndex(currentIndex, ListView.Contain);
    }

    clip: true
    focus: true
    activeFocusOnTab: true
    reuseItems: true
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 400
    currentIndex: 0
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    pixelAligned: true
    Accessible.role: Accessible.List
    Accessible.name: root.label
    onActiveFocusChanged: showsCurrent = activeFocus

    T.ScrollBar.vertical: ScrollHint {}

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Up:
            root.goTo(root.currentIndex - 1);
            break;
        case Qt.Key_Down:
            root.goTo(root.currentIndex + 1);
            break;
        case Qt.Key_PageUp:
            root.goTo(root.currentIndex - root.pageRows);
            break;
        case Qt.Key_PageDown:
            root.goTo(root.currentIndex + root.pageRows);
            break;
        case Qt.Key_Home:
            root.goTo(0);
            break;
        case Qt.Key_End:
            root.goTo(root.count - 1);
            break;
        case Qt.Key_Space:
        case Qt.Key_Return:
        case Qt.Key_Enter:
            root.rowToggled(root.currentIndex);
            break;
        case Qt.Key_Left:
            root.rowFolded(root.currentIndex, false);
            break;
        case Qt.Key_Right:
            root.rowFolded(root.currentIndex, true);
            break;
        default:
            return;
        }
        event.accepted = true;
    }
}
