pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The content of a folder by size: a path to climb, filters, the picture, and the largest beside it.
ColumnLayout {
    id: root

    required property MapModel model

    property bool asRings: false
    // Made when it is first asked for.
    property AreaMenu menu: null
    readonly property var areas: model.areas ?? []
    readonly property var trail: model.trail ?? []
    readonly property var named: areas.filter(area => area.canAct)
    // The picture takes a share of the window, and the list beside it as many rows as fit.
    readonly property int pictureHeight: Math.max(372, Math.round((Window.height || 0) * 0.44))
    readonly property int maxListed: Math.floor((pictureHeight - 20) / 50)
    // Controls stay for the next folder, and are there before it is chosen: showing one costs much less than making it.
    readonly property int madeRows: maxListed
    property int madeSteps: 2

    onTrailChanged: madeSteps = Math.max(madeSteps, trail.length + 1)

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
        if (!menu)
            menu = menuComponent.createObject(root) as AreaMenu;
        menu.area = area;
        menu.popup(item, 12, Math.min(item.height, 36));
    }

    spacing: 10

    OnlyWhen {
        holds: !root.model.wasAsked

        SettingRow {
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
    }

    Flow {
        Layout.fillWidth: true
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
                text: index > 0 ? Texts.fromLeft("› " + name) : name
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
        spacing: 24

        ColumnLayout {
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            spacing: 6

            OnlyWhen {
                holds: !root.asRings

                Treemap {
                    Layout.fillWidth: true
                    Layout.preferredHeight: root.pictureHeight
                    areas: root.areas
                    summary: root.summary
                    onChosen: (area, child) => root.go(area, child)
                    onMenuAsked: (area, item) => root.showMenu(area, item)
                }
            }

            OnlyWhen {
                holds: root.asRings

                Sunburst {
                    Layout.fillWidth: true
                    Layout.preferredHeight: root.pictureHeight
                    areas: root.areas
                    summary: root.summary
                    figure: Texts.roughBytes(root.model.shownBytes, 3)
                    onChosen: (area, child) => root.go(area, child)
                    onMenuAsked: (area, item) => root.showMenu(area, item)
                }
            }

            CaptionText {
                Layout.fillWidth: true
                wrapMode: Text.Wrap
                text: qsTr("map.hint") + (root.model.unreadable > 0
                                          ? " " + Texts.counted("map.unreadable", root.model.unreadable) : "")
            }
        }

        ColumnLayout {
            Layout.preferredWidth: root.width > 1100 ? 320 : 250
            Layout.maximumWidth: Layout.preferredWidth
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
                    area: index < root.maxListed ? root.named[index] ?? null : null
                    grownText: area ? root.grownText(area) : ""
                    onChosen: root.go(area, null)
                    onMenuAsked: root.showMenu(area, this)
                }
            }
        }
    }

    Component {
        id: menuComponent

        AreaMenu {}
    }

    component AreaMenu: ChoiceMenu {
        id: areaMenu

        property var area: null

        ChoiceItem {
            isChoice: false
            symbol: "folder-open"
            text: qsTr("map.open")
            onTriggered: root.model.openFolder(areaMenu.area.folder)
        }

        ChoiceItem {
            isChoice: false
            visible: areaMenu.area?.isReclaimable ?? false
            symbol: "cleanup"
            text: qsTr("map.cleanup")
            onTriggered: root.model.showInCleanup(areaMenu.area.folder)
        }

        ChoiceItem {
            isChoice: false
            visible: areaMenu.area?.canEnter ?? false
            symbol: "organize"
            text: qsTr("map.organize")
            onTriggered: root.model.organizeFolder(areaMenu.area.folder)
        }

        ChoiceItem {
            isChoice: false
            visible: areaMenu.area?.canEnter ?? false
            symbol: "duplicates"
            text: qsTr("map.duplicates")
            onTriggered: root.model.findDuplicates(areaMenu.area.folder)
        }
    }
}
