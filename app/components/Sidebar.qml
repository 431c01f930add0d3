pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Orvane

// The sections in their groups, the language, and at the foot the disk. Arrow keys go from section to section.
FocusScope {
    id: root

    required property AppState appState
    required property NavigationModel navigation
    required property LanguageModel languages
    required property OverviewModel overview

    readonly property bool isCompact: height < 690

    implicitWidth: Theme.sidebarWidth
    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("app.name")

    Rectangle {
        anchors.fill: parent
        color: Theme.sidebar

        Rectangle {
            anchors.right: parent.right
            width: 1
            height: parent.height
            color: Theme.line
        }
    }

    Row {
        id: mark

        x: 21
        y: 21
        spacing: 10

        Icon {
            name: "mark"
            size: 22
            color: Theme.accent
        }

        HeadingText {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("app.name")
            font.pixelSize: 16
        }
    }

    Flickable {
        anchors.top: parent.top
        anchors.topMargin: root.isCompact ? 56 : 62
        anchors.bottom: foot.top
        anchors.bottomMargin: 8
        width: parent.width - 1
        contentHeight: sections.implicitHeight
        clip: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds

        T.ScrollBar.vertical: ScrollHint {}

        Column {
            id: sections

            x: 12
            width: parent.width - 24
            spacing: 2

            property int lastGroup: -1

            function move(from: int, by: int) {
                const target = repeater.itemAt(from + by) as SidebarEntry;
                if (target)
                    target.choose();
            }

            Repeater {
                id: repeater

                model: root.navigation
                delegate: SidebarEntry {
                    width: sections.width
                    appState: root.appState
                    isCompact: root.isCompact
                    onMoved: by => sections.move(index, by)
                }
                // A little air before each group but the first.
                onItemAdded: (index, item) => {
                    const entry = item as SidebarEntry;
                    entry.startsGroup = index > 0 && entry.group !== sections.lastGroup;
                    sections.lastGroup = entry.group;
                }
            }
        }
    }

    Column {
        id: foot

        anchors.bottom: parent.bottom
        anchors.bottomMargin: root.isCompact ? 14 : 24
        x: 20
        width: parent.width - 41
        spacing: 6

        SidebarItem {
            id: languageButton

            x: -8
            width: parent.width + 16
            text: qsTr("nav.language")
            symbol: "globe"
            activeFocusOnTab: true
            Accessible.role: Accessible.ButtonMenu
            onClicked: languageMenu?.opened ? languageMenu.close() : openMenu()

            // Made when it is asked for: names in every script load a font for each.
            property ChoiceMenu languageMenu: null

            function openMenu() {
                if (!languageMenu)
                    languageMenu = menuComponent.createObject(languageButton) as ChoiceMenu;
                languageMenu.open();
            }

            Component {
                id: menuComponent

                ChoiceMenu {
                    y: -height - 4

                    Repeater {
                        model: root.languages

                        ChoiceItem {
                            required property string code
                            required property string nativeName
                            required property bool current

                            text: nativeName
                            isCurrent: current
                            onTriggered: root.languages.select(code)
                        }
                    }
                }
            }
        }

        SidebarItem {
            x: -8
            width: parent.width + 16
            visible: root.overview.trashCount > 0
            text: qsTr("dashboard.in_trash")
            figure: Texts.roughBytes(root.overview.trashBytes, 2)
            symbol: "trash"
            activeFocusOnTab: true
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("action.open_trash")
            onClicked: root.appState.openTrash()
        }

        Item {
            width: 1
            height: 2
        }

        DiskBar {
            width: parent.width
            visible: root.appState.totalBytes > 0
            used: root.appState.usedBytes
            total: root.appState.totalBytes
            text: qsTr("sidebar.disk").arg(Texts.roughBytes(root.appState.freeBytes, 3)).arg(
                      Texts.roughBytes(root.appState.totalBytes, 3))
        }

        CaptionText {
            width: parent.width
            text: qsTr("sidebar.trash_frees_later")
            wrapMode: Text.Wrap
        }
    }
}
