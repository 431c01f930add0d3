pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The sums over the history, side by side: a card for each, and one for the last weeks.
RowLayout {
    id: root

    // False while the figures are added up for the first time.
    property bool isKnown: false
    property double movedBytes: 0
    property double restoredBytes: 0
    property double inTrashBytes: 0
    property var weeks: []

    readonly property bool isNarrow: width < Theme.narrow

    spacing: isNarrow ? 12 : Theme.gap

    component FigureCard: Card {
        id: card

        property string caption: ""
        property string figure: ""

        Layout.fillWidth: true
        Layout.fillHeight: true
        // All of one width, however long their captions are.
        Layout.preferredWidth: 100
        implicitHeight: words.implicitHeight + 2 * padding
        padding: root.isNarrow ? 14 : 18

        Figure {
            id: words

            width: parent.width
            caption: card.caption
            captionLines: 2
            figure: card.figure
        }
    }

    FigureCard {
        caption: qsTr("history.moved_in_all")
        figure: root.isKnown ? Texts.bytes(root.movedBytes) : "…"
    }

    FigureCard {
        caption: qsTr("history.brought_back")
        figure: root.isKnown ? Texts.bytes(root.restoredBytes) : "…"
    }

    FigureCard {
        caption: qsTr("history.still_in_trash")
        figure: root.isKnown ? Texts.bytes(root.inTrashBytes) : "…"
    }

    Card {
        id: weekCard

        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.preferredWidth: 100
        implicitHeight: root.isNarrow ? 82 : 90
        padding: root.isNarrow ? 14 : 18

        CaptionText {
            id: weekCaption

            width: parent.width
            text: qsTr("history.by_week")
            Accessible.ignored: true
        }

        WeekBars {
            anchors.top: weekCaption.bottom
            anchors.topMargin: 6
            anchors.bottom: parent.bottom
            width: parent.width
            weeks: root.weeks
        }
    }
}
