pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// A button that shows the choice in force and opens the menu of the others.
PlainButton {
    id: root

    // The texts of the choices, in order, or their keys.
    property var keys: []
    property var choices: keys.map(key => qsTr(key))
    property int current: -1
    property string label: ""
    // Made when it is asked for: most menus never are.
    property ChoiceMenu menu: null
    signal chosen(int index)

    function openMenu() {
        if (!menu)
            menu = menuComponent.createObject(root) as ChoiceMenu;
        menu.open();
    }

    trailingSymbol: "chevron-down"
    text: choices[current] ?? ""
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: label === "" ? text : label + ": " + text
    onClicked: menu?.opened ? menu.close() : openMenu()
    Keys.onDownPressed: openMenu()

    Component {
        id: menuComponent

        ChoiceMenu {
            y: root.height + 6
            x: Math.min(0, root.width - width)

            Repeater {
                model: root.choices

                ChoiceItem {
                    required property string modelData
                    required property int index

                    text: modelData
                    isCurrent: index === root.current
                    onTriggered: root.chosen(index)
                }
            }
        }
    }
}
