import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Orvane

// The cards of a page under one another, which scroll where there are more than fit: by the wheel, by the keys, and to
// the control that gets the keyboard. Fills the page's body.
Flickable {
    id: root

    default property alias cards: column.data

    function scrollBy(distance: real) {
        contentY = Math.max(0, Math.min(contentHeight - height, contentY + distance));
    }

    anchors.fill: parent
    // Room for the cards' shadows, and for the scroll bar in the page's margin.
    anchors.margins: -4
    anchors.rightMargin: -20
    anchors.bottomMargin: -24
    contentHeight: column.height + 28
    clip: true
    boundsBehavior: Flickable.StopAtBounds

    T.ScrollBar.vertical: ScrollHint {}

    Keys.onPressed: event => {
        switch (event.key) {
        case Qt.Key_Up:
            root.scrollBy(-48);
            break;
        case Qt.Key_Down:
            root.scrollBy(48);
            break;
        case Qt.Key_PageUp:
            root.scrollBy(48 - root.height);
            break;
        case Qt.Key_PageDown:
            root.scrollBy(root.height - 48);
            break;
        case Qt.Key_Home:
            root.scrollBy(-root.contentHeight);
            break;
        case Qt.Key_End:
            root.scrollBy(root.contentHeight);
            break;
        default:
            return;
        }
        event.accepted = true;
    }

    // Shows that there is more above.
    Divider {
        parent: root
        width: parent.width - 16
        visible: !root.atYBeginning
        z: 1
    }

    FocusFollower {
        area: root
    }

    ColumnLayout {
        id: column

        x: 4
        y: 4
        width: root.width - 24
        spacing: Theme.gap
    }
}
