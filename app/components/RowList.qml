import QtQuick
import QtQuick.Templates as T
import Orvane

// A long list that the keyboard can walk: arrows, pages, Home and End, with Shift for a range; Enter acts on the row,
// Space looks at its item, left and right fold it, the menu key or Shift+F10 opens its menu. Rows are reused, so a
// million of them scroll as ten do.
ListView {
    id: root

    // Whether the current row shows that it has the keyboard; the pointer takes it away.
    property bool showsCurrent: false
    property string label: ""
    // Where rows are items that can be looked at; else Space acts as Enter does.
    property bool canLook: false
    signal rowToggled(int row)
    signal rowFolded(int row, bool open)
    signal lookAsked(int row)
    // The keyboard asks for the row's menu.
    signal rowMenuAsked(int row)
    // Rows from one to the other are to be selected.
    signal rangeAsked(int from, int to)

    // Where a range begins: the row that was acted on last without Shift.
    property int anchor: 0

    readonly property int pageRows: Math.max(1, Math.floor(height / 51) - 1)

    function goTo(row: int) {
        showsCurrent = true;
        currentIndex = Math.max(0, Math.min(count - 1, row));
        positionViewAtIndex(currentIndex, ListView.Contain);
        tellRow();
    }

    function tellRow() {
        if (activeFocus)
            voice.tell(itemAtIndex(currentIndex));
    }

    // The row is told after the list's own change of focus, which would be heard last.
    Timer {
        id: settled

        interval: 0
        onTriggered: root.tellRow()
    }

    RowVoice {
        id: voice
    }

    function walkTo(row: int, extend: bool) {
        if (!extend)
            anchor = Math.max(0, Math.min(count - 1, row));
        goTo(row);
        if (extend)
            rangeAsked(anchor, currentIndex);
    }

    function act() {
        anchor = currentIndex;
        rowToggled(currentIndex);
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
    onActiveFocusChanged: {
        showsCurrent = activeFocus;
        settled.restart();
    }

    T.ScrollBar.vertical: ScrollHint {}

    Keys.onPressed: event => {
        const extend = (event.modifiers & Qt.ShiftModifier) !== 0;
        switch (event.key) {
        case Qt.Key_Up:
            root.walkTo(root.currentIndex - 1, extend);
            break;
        case Qt.Key_Down:
            root.walkTo(root.currentIndex + 1, extend);
            break;
        case Qt.Key_PageUp:
            root.walkTo(root.currentIndex - root.pageRows, extend);
            break;
        case Qt.Key_PageDown:
            root.walkTo(root.currentIndex + root.pageRows, extend);
            break;
        case Qt.Key_Home:
            root.walkTo(0, extend);
            break;
        case Qt.Key_End:
            root.walkTo(root.count - 1, extend);
            break;
        case Qt.Key_Space:
            if (root.canLook)
                root.lookAsked(root.currentIndex);
            else
                root.act();
            break;
        case Qt.Key_Return:
        case Qt.Key_Enter:
            root.act();
            break;
        case Qt.Key_Left:
            root.rowFolded(root.currentIndex, false);
            break;
        case Qt.Key_Right:
            root.rowFolded(root.currentIndex, true);
            break;
        case Qt.Key_Menu:
            root.rowMenuAsked(root.currentIndex);
            break;
        case Qt.Key_F10:
            if (!extend)
                return;
            root.rowMenuAsked(root.currentIndex);
            break;
        default:
            return;
        }
        event.accepted = true;
    }
}
