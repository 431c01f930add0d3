pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// Shows the language in force and offers the others.
PlainButton {
    id: root

    required property LanguageModel languages
    property string current: ""

    symbol: "globe"
    trailingSymbol: "chevron-down"
    text: current
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: qsTr("nav.language") + ": " + current
    onClicked: menu.opened ? menu.close() : menu.open()

    ChoiceMenu {
        id: menu

        y: root.height + 6
        x: Math.min(0, root.width - width)

        Repeater {
            model: root.languages

            ChoiceItem {
                id: item

                required property string code
                required property string nativeName
                required property bool current

                text: nativeName
                isCurrent: current
                onTriggered: root.languages.select(code)

                Binding {
                    target: root
                    property: "current"
                    value: item.nativeName
                    when: item.current
                    restoreMode: Binding.RestoreNone
                }
            }
        }
    }
}
