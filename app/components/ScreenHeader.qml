import QtQuick
import Orvane

// The title of a screen, one line that says where things stand, and its actions: at the right, or below where there is
// no room beside the title.
Item {
    id: root

    property string title: ""
    property string subtitle: ""
    default property alias actions: actionFlow.data

    readonly property real actionsWidth: {
        let sum = 0;
        let shown = 0;
        for (let i = 0; i < actionFlow.children.length; ++i) {
            const item = actionFlow.children[i];
            if (item.visible && item.implicitWidth > 0) {
                sum += item.width;
                ++shown;
            }
        }
        return sum + Math.max(0, shown - 1) * actionFlow.spacing;
    }
    readonly property real wantedWidth: Math.max(titleText.implicitWidth, Math.min(260, subtitleText.implicitWidth))
    readonly property bool stacked: actionsWidth > 0 && actionsWidth + 24 + wantedWidth > width

    // Short parts between dots stay whole where the line breaks, and no dot is left at its end.
    readonly property var parts: subtitle.split(" · ").map(
                                     part => part.length < 32 ? part.replace(/ /g, "\u00a0") : part)
    readonly property string firstParts: parts.slice(0, -1).join(" · ")
    readonly property bool breaksAtDot: parts.length > 1 && wholeMetrics.advanceWidth > titleText.width
                                        && firstMetrics.advanceWidth <= titleText.width
    readonly property string shownSubtitle: breaksAtDot ? firstParts + "\n" + parts[parts.length - 1] : parts.join(" · ")
    // A long line takes a second one rather than lose its end.
    readonly property int moreLines: Math.max(0, subtitleText.lineCount - 1) * 20

    implicitHeight: stacked ? 70 + moreLines + actionFlow.implicitHeight : 60 + moreLines

    TextMetrics {
        id: wholeMetrics

        font: subtitleText.font
        text: root.parts.join(" · ")
    }

    TextMetrics {
        id: firstMetrics

        font: subtitleText.font
        text: root.firstParts
    }

    TitleText {
        id: titleText

        width: root.stacked ? root.width : root.width - root.actionsWidth - 24
        height: 28
        verticalAlignment: Text.AlignVCenter
        text: root.title
        Accessible.role: Accessible.Heading
    }

    BodyText {
        id: subtitleText

        y: 28
        width: titleText.width
        color: Theme.muted
        text: root.shownSubtitle
        wrapMode: Text.Wrap
        maximumLineCount: 2

        HoverHandler {
            id: hover
        }

        Tip {
            text: root.subtitle
            shown: hover.hovered && subtitleText.truncated
        }
    }

    Flow {
        id: actionFlow

        x: root.stacked ? 0 : root.width - root.actionsWidth
        y: root.stacked ? 60 + root.moreLines : 6
        width: root.stacked ? root.width : root.actionsWidth
        spacing: 12
    }
}
