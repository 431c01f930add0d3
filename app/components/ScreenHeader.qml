import QtQuick
import Orvane

// The title of a screen, one line that says where things stand, and its actions: at the right, or below where there is
// no room beside the title.
Item {
    id: root

    property string title: ""
    property string subtitle: ""
    // Said behind the subtitle where the line has room for it.
    property string aside: ""
    default property alias actions: actionFlow.data

    // Of what they ask for, never of what a row gives them.
    readonly property real actionsWidth: {
        let sum = 0;
        let shown = 0;
        for (let i = 0; i < actionFlow.children.length; ++i) {
            const item = actionFlow.children[i];
            if (item.visible && item.implicitWidth > 0) {
                sum += item.implicitWidth;
                ++shown;
            }
        }
        return sum + Math.max(0, shown - 1) * actionFlow.spacing;
    }
    // From the texts alone: the width of what is shown follows from where the actions stand.
    readonly property real wantedWidth: Math.max(titleMetrics.advanceWidth, Math.min(260, wholeMetrics.advanceWidth))
    readonly property bool stacked: actionsWidth > 0 && actionsWidth + 24 + wantedWidth > width

    // Short parts between dots stay whole where the line breaks, and no dot is left at its end. Where there are no dots,
    // the line breaks between its sentences.
    readonly property string joint: subtitle.includes(" · ") ? " · " : " "
    readonly property var parts: joint === " " ? subtitle.replace(/\. /g, ".\n").split("\n")
                                               : subtitle.split(joint).map(part => part.length < 32
                                                                                   ? part.replace(/ /g, "\u00a0") : part)
    readonly property string firstParts: parts.slice(0, -1).join(joint)
    readonly property bool breaksAtDot: parts.length > 1 && wholeMetrics.advanceWidth > titleText.width
                                        && firstMetrics.advanceWidth <= titleText.width
                                        && lastMetrics.advanceWidth <= titleText.width
    readonly property string wholeLine: Texts.joined([subtitle, aside], " · ")
    readonly property string shownSubtitle: breaksAtDot ? firstParts + "\n" + parts[parts.length - 1]
                                                        : aside !== "" && asideMetrics.advanceWidth <= titleText.width
                                                          ? wholeLine : parts.join(joint)
    // A long line takes a second one rather than lose its end.
    readonly property int moreLines: Math.max(0, subtitleText.lineCount - 1) * 20

    implicitHeight: stacked ? 70 + moreLines + actionFlow.implicitHeight : 60 + moreLines

    TextMetrics {
        id: titleMetrics

        font: titleText.font
        text: root.title
    }

    TextMetrics {
        id: wholeMetrics

        font: subtitleText.font
        text: root.parts.join(root.joint)
    }

    TextMetrics {
        id: firstMetrics

        font: subtitleText.font
        text: root.firstParts
    }

    TextMetrics {
        id: asideMetrics

        font: subtitleText.font
        text: root.wholeLine
    }

    TextMetrics {
        id: lastMetrics

        font: subtitleText.font
        text: root.parts[root.parts.length - 1]
    }

    TitleText {
        id: titleText

        width: root.stacked ? root.width : root.width - root.actionsWidth - 24
        height: 28
        verticalAlignment: Text.AlignVCenter
        text: root.title
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
