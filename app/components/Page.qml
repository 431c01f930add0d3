import QtQuick
import Orvane

// The frame of all screens: the margins, the header at the top, the content below.
FocusScope {
    id: root

    property alias title: header.title
    property alias subtitle: header.subtitle
    property alias aside: header.aside
    property alias actions: header.actions
    default property alias content: body.data
    readonly property bool isNarrow: width < Theme.narrow
    readonly property bool isWide: width >= Theme.wide
    readonly property real bodyHeight: body.height
    // The window is to show its introduction.
    signal introductionAsked

    Accessible.role: Accessible.Pane
    Accessible.name: root.title

    // Asked for by the window's shortcuts; a screen answers what it can.
    function find() {}

    function selectAll() {}

    function deselectAll() {}

    function undo() {}

    // A folder was dropped on the window; true where the screen has a use of its own for it.
    function takeFolder(url: string): bool {
        return false;
    }

    function startWork() {}

    ScreenHeader {
        id: header

        x: Theme.margin
        y: 22
        width: root.width - 2 * Theme.margin
    }

    Item {
        id: body

        anchors.top: header.bottom
        anchors.topMargin: 2
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 24
        x: Theme.margin
        width: root.width - 2 * Theme.margin
    }
}
