pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The content of a folder by size: a path to climb, filters, the picture, and the largest beside it. Before the first map it offers
// to make one.
Card {
    id: root

    required property MapModel model

    property bool asRings: false
    readonly property var areas: model.areas ?? []
    readonly property var trail: model.trail ?? []
    readonly property var named: areas.filter(area => area.canAct)
    // The picture takes a share of the window, and the list beside it as many rows as fit.
    readonly property int pictureHeight: Math.max(372, Math.round((Window.height || 0) * 0.44))
    readonly property int mostListed: Math.floor((pictureHeight - 20) / 50)
    // Its actions stand below the title where both have no room in a line.
    readonly property real linksWidth: Math.ceil(fileLink.implicitWidth + folderLink.implicitWidth + 8
                                                 + (againLink.visible ? againLink.implicitWidth + 8 : 0))
    readonly property bool isTight: title.implicitWidth + linksWidth + 12 > layout.width
    // Controls stay for the next folder: showing another one costs much less than making it.
    property int madeRows: 0
    property int madeSteps: 0

    onNamedChanged: madeRows = Math.max(madeRows, Math.min(mostListed, named.length))
    onTrailChanged: madeSteps = Math.max(madeSteps, trail.length)

    readonly property string summary: qsTr("map.summary").arg(Texts.bytes(model.shownBytes)).arg(
        Texts.counted("count.files", model.shownFiles)).arg(
        named.slice(0, 5).map(area => area.label + " " + Texts.bytes(area.bytes)).join(", "))

    function go(area: var, child: var): void {
        if (child?.canEnter)
            model.enter(child.folder);
        else if (area.canEnter)
            model.enter(area.folder);
    }

    function grownText(area: var): string {
        if (!area.hasGrown)
            return "";
        return area.grown === 0 ? qsTr("map.same") : (area.grown > 0 ? "+" : "−") + Texts.bytes(Math.abs(area.grown));
    }

    function showMenu(area: var, item: Item): void {
        if (!area.canAct || root.model.fileName !== "")
            return;
        menu.area = area;
        menu.popup(item, 12, Math.min(item.height, 36));
    }

    implicitHeight: layout.implicitHeight + 2 * padding - 2

    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Backspace || root.trail.length < 2)
            return;
        root.model.goUp();
        event.accepted = true;
    }

    PickFolder {
        id: picker

        onPicked: url => root.model.start(url)
    }

    PickFile {
        id: filePicker

        title: qsTr("map.open_file")
        onPicked: url => root.model.openFile(url)
    }

    ChoiceMenu {
        id: menu

        property var area: null

        ChoiceItem {
            isChoice: false
            symbol: "folder-open"
            text: qsTr("map.open")
            onTriggered: root.model.openFolder(menu.area.folder)
        }

        ChoiceItem {
            isChoice: false
            visible: menu.area?.isReclaimable ?? false
            symbol: "cleanup"
            text: qsTr("map.cleanup")
            onTriggered: root.model.showInCleanup(menu.area.folder)
        }

        ChoiceItem {
            isChoice: false
            visible: menu.area?.canEnter ?? false
            symbol: "organize"
            text: qsTr("map.organize")
            onTriggered: root.model.organizeFolder(menu.area.folder)
        }

        ChoiceItem {
            isChoice: false
            visible: menu.area?.canEnter ?? false
            symbol: "duplicates"
            text: qsTr("map.duplicates")
            onTriggered: root.model.findDuplicates(menu.area.folder)
        }
    }

    ColumnLayout {
        id: layout

        width: parent.width
        spacing: 10

        GridLayout {
            Layout.fillWidth: true
            columns: root.isTight ? 1 : 2
            columnSpacing: 8
            rowSpacing: 2

            HeadingText {
                id: title

                Layout.fillWidth: true
                text: qsTr("map.title")
            }

            Flow {
                Layout.fillWidth: root.isTight
                Layout.preferredWidth: root.linksWidth
                Layout.leftMargin: root.isTight ? -8 : 0
                spacing: 8

                LinkButton {
                    id: fileLink

                    visible: !root.model.isMapping
                    symbol: "file"
                    text: qsTr("map.open_file")
                    onClicked: filePicker.open()
                }

                LinkButton {
                    id: folderLink

                    visible: !root.model.isMapping
                    symbol: "folder"
                    text: qsTr("map.choose")
                    onClicked: picker.open()
                }

                LinkButton {
                    id: againLink

                    visible: root.model.hasMap && !root.model.isMapping
                    symbol: "refresh"
                    text: qsTr("map.again")
                    onClicked: root.model.start("")
                }
            }
        }

        ProgressStrip {
            Layout.fillWidth: true
            visible: root.model.isMapping
            title: qsTr("map.mapping")
            figures: Texts.counted("count.files", root.model.filesSoFar)
            detail: root.model.placeSoFar
            onCancelAsked: root.model.cancel()
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.problem !== ""
            isWarning: true
            text: root.model.problem
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.fileName !== ""
            text: qsTr("map.from_file").arg(root.model.fileName)
        }

        SettingRow {
            visible: !root.model.hasMap && !root.model.isMapping
            label: qsTr("map.text")

            PlainButton {
                symbol: "overview"
                text: qsTr("map.start")
                onClicked: root.model.start("")
            }
        }

        SettingRow {
            visible: root.model.hasMap && !root.model.wasAsked
            label: qsTr("map.offer")

            PlainButton {
                text: qsTr("map.offer_yes")
                onClicked: root.model.setRemembers(true)
            }

            LinkButton {
                text: qsTr("map.offer_no")
                onClicked: root.model.setRemembers(false)
            }
        }

        Flow {
            Layout.fillWidth: true
            visible: root.model.hasMap
            spacing: 2
            Accessible.role: Accessible.Grouping
            Accessible.name: qsTr("map.path")

            Repeater {
                model: root.madeSteps

                LinkButton {
                    required property int index
                    readonly property var step: root.trail[index] ?? null
                    readonly property string name: step?.name ?? ""

                    visible: step !== null
                    enabled: index < root.trail.length - 1
                    ink: enabled ? Theme.accent : Theme.text
                    text: (index > 0 ? "› " : "") + name
                    Accessible.name: name
                    onClicked: root.model.enter(step.folder)
                }
            }

            CaptionText {
                height: 30
                leftPadding: 6
                verticalAlignment: Text.AlignVCenter
                text: Texts.bytes(root.model.shownBytes) + " · " + Texts.counted("count.files", root.model.shownFiles)
            }
        }

        Flow {
            Layout.fillWidth: true
            visible: root.model.hasMap
            spacing: 8

            MenuButton {
                label: qsTr("map.show_as")
                keys: ["map.treemap", "map.sunburst"]
                current: root.asRings ? 1 : 0
                onChosen: index => root.asRings = index === 1
            }

            MenuButton {
                label: qsTr("map.measure")
                keys: ["map.on_disk", "map.length"]
                current: root.model.measure
                onChosen: index => root.model.measure = index
            }

            MenuButton {
                label: qsTr("map.kind")
                keys: root.model.kindKeys
                current: root.model.kind
                onChosen: index => root.model.kind = index
            }

            MenuButton {
                label: qsTr("map.age")
                keys: root.model.ageKeys
                current: root.model.age
                onChosen: index => root.model.age = index
            }

            MenuButton {
                label: qsTr("map.category")
                keys: root.model.categoryKeys
                current: root.model.category
                onChosen: index => root.model.category = index
            }
        }

        RowLayout {
            Layout.fillWidth: true
            visible: root.model.hasMap
            spacing: 24

            ColumnLayout {
                Layout.fillWidth: true
                Layout.alignment: Qt.AlignTop
                spacing: 6

                Treemap {
                    Layout.fillWidth: true
                    Layout.preferredHeight: root.pictureHeight
                    visible: !root.asRings
                    areas: root.asRings ? [] : root.areas
                    summary: root.summary
                    onChosen: (area, child) => root.go(area, child)
                    onMenuAsked: (area, item) => root.showMenu(area, item)
                }

                Sunburst {
                    Layout.fillWidth: true
                    Layout.preferredHeight: root.pictureHeight
                    visible: root.asRings
                    areas: root.asRings ? root.areas : []
                    summary: root.summary
                    figure: Texts.roughBytes(root.model.shownBytes, 3)
                    onChosen: (area, child) => root.go(area, child)
                    onMenuAsked: (area, item) => root.showMenu(area, item)
                }

                CaptionText {
                    Layout.fillWidth: true
                    wrapMode: Text.Wrap
                    text: qsTr("map.hint") + (root.model.unreadable > 0
                                              ? " " + Texts.counted("map.unreadable", root.model.unreadable) : "")
                }
            }

            ColumnLayout {
                Layout.preferredWidth: 250
                Layout.maximumWidth: 250
                Layout.alignment: Qt.AlignTop
                spacing: 0

                HeadingText {
                    Layout.fillWidth: true
                    Layout.bottomMargin: 6
                    text: qsTr("map.largest")
                }

                Repeater {
                    model: root.madeRows

                    MapRow {
                        required property int index

                        Layout.fillWidth: true
                        visible: area !== null
                        area: index < root.mostListed ? root.named[index] ?? null : null
                        grownText: area ? root.grownText(area) : ""
                        onChosen: root.go(area, null)
                        onMenuAsked: root.showMenu(area, this)
                    }
                }
            }
        }
    }
}
