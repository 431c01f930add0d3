import QtQuick
import Orvane

// One installed application.
Item {
    id: root

    required property int index
    required property string name
    required property string identifier
    required property string version
    required property double bytes
    required property double lastOpened
    required property bool isProtected
    required property string icon
    required property string kindKey
    required property bool isOrphan
    required property string command
    property bool isFocused: false
    signal reviewAsked
    signal copyAsked
    signal menuAsked

    readonly property bool hasCommand: command !== ""
    readonly property bool canReview: !isProtected && bytes >= 0
    // Without one a single pixel comes.
    readonly property bool hasIcon: picture.status === Image.Ready && picture.implicitWidth > 1
    readonly property string kindText: isOrphan && kindKey === "apps.kind.desktopEntry"
                                       ? qsTr("apps.program_gone") : kindKey === "" ? "" : qsTr(kindKey)
    readonly property string detail: hasCommand ? Texts.joined([kindText, version, command], " · ")
                                                    : Texts.joined([kindText, version, identifier], " · ")
    readonly property string age: lastOpened > 0 ? Texts.age(lastOpened)
                                                 : kindKey === "" ? qsTr("apps.never_opened") : ""

    // The keyboard leaves the action of a row with the row.
    onIsFocusedChanged: {
        if (isFocused)
            return;
        copy.focus = false;
        review.focus = false;
    }

    height: 58
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.description: Texts.joined([detail, age, isProtected ? lock.text : ""], ", ")
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.onPressAction: if (!root.isProtected) root.reviewAsked()

    Rectangle {
        anchors.fill: parent
        color: area.containsMouse && !root.isProtected ? Theme.hover : Theme.surface
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                root.menuAsked();
            else if (!root.isProtected)
                root.reviewAsked();
        }
    }

    Rectangle {
        id: tile

        x: 16
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        height: 36
        radius: 9
        color: root.hasIcon ? "transparent" : Theme.accentSoft

        Text {
            anchors.centerIn: parent
            visible: !root.hasIcon
            // Of the whole character, where it takes two.
            text: String.fromCodePoint(root.name.codePointAt(0) ?? 63).toUpperCase()
            color: Theme.accentHover
            font.pixelSize: 17
            font.weight: Font.DemiBold
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        Image {
            id: picture

            anchors.fill: parent
            source: root.icon
            sourceSize.width: 72
            sourceSize.height: 72
            fillMode: Image.PreserveAspectFit
            asynchronous: true
            cache: false
        }
    }

    Column {
        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: lock.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter

        BodyText {
            id: title

            width: parent.width
            text: root.name
            elide: Text.ElideMiddle
            font.weight: Font.Medium
            Accessible.ignored: true
        }

        CaptionText {
            id: detailText

            width: parent.width
            text: Texts.fromLeft(root.detail)
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }

    Chip {
        id: lock

        anchors.right: ageText.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isProtected
        width: visible ? implicitWidth : 0
        symbol: "lock"
        showsText: root.width > 640
        text: root.hasCommand ? qsTr("apps.managed") : qsTr("apps.protected")

        HoverHandler {
            id: lockHover
        }

        Tip {
            text: lock.text
            shown: lockHover.hovered && !lock.showsText
        }
    }

    CaptionText {
        id: ageText

        anchors.right: size.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: root.age === "" ? 0 : Math.max(96, implicitWidth)
        horizontalAlignment: Text.AlignRight
        text: root.age
        Accessible.ignored: true
    }

    BodyText {
        id: size

        anchors.right: button.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(68, implicitWidth)
        horizontalAlignment: Text.AlignRight
        text: root.bytes < 0 ? "…" : Texts.bytes(root.bytes)
        Accessible.ignored: true
    }

    Item {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: 12
        height: parent.height
        width: Math.max(review.implicitWidth, copy.implicitWidth)

        LinkButton {
            id: copy

            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            // Tab goes from the row that has the keyboard to its action, and from there past the other rows.
            focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
            visible: root.hasCommand
            text: qsTr("apps.copy_command")
            Accessible.name: text + ": " + root.name
            Accessible.description: root.command
            onClicked: root.copyAsked()
        }

        LinkButton {
            id: review

            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
            visible: !root.isProtected
            enabled: root.canReview
            text: qsTr("apps.review")
            Accessible.name: text + ": " + root.name
            onClicked: root.reviewAsked()
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }

    FullTip {
        isPointedAt: area.containsMouse
        labels: [title, detailText]
    }

    FocusRing {
        shown: root.isFocused
        around: -2
        radius: 6
    }
}
