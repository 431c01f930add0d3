import QtQuick
import Orvane

// Words of a request with what they became, on one line.
Row {
    id: root

    property string typed: ""
    property string became: ""
    property color ink: Theme.muted
    // Room for both.
    property real maxWidth: 400

    spacing: 5

    CaptionText {
        id: first

        width: Math.min(implicitWidth, root.maxWidth / 2)
        visible: text !== ""
        color: Theme.text
        font.weight: Font.DemiBold
        text: root.typed
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    CaptionText {
        width: Math.min(implicitWidth, root.maxWidth - (first.visible ? first.width + root.spacing : 0))
        visible: text !== ""
        color: root.ink
        text: Texts.fromLeft(root.typed !== "" && root.became !== "" ? "→ " + root.became : root.became)
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
}
