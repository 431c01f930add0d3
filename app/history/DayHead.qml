import QtQuick
import Orvane

// The head over the runs of one day.
Item {
    id: root

    // The day as YYYY-MM-DD.
    required property string section
    property string today: Format.today()

    width: parent ? parent.width : 0
    height: 36
    // Here, as a label says that it is a label whatever it is told to say.
    Accessible.role: Accessible.Heading
    Accessible.name: title.text

    // "Today" is yesterday after midnight.
    Timer {
        interval: 30000
        repeat: true
        running: root.visible
        onTriggered: root.today = Format.today()
    }

    HeadingText {
        id: title

        y: 4
        width: parent.width
        height: 20
        verticalAlignment: Text.AlignVCenter
        text: Texts.dayHead(root.section, root.today)
        Accessible.ignored: true
    }
}
