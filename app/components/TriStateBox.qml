import QtQuick
import QtQuick.Templates as T
import Orvane

// A box that is empty, ticked or partly ticked. The label is for assistive technology unless `labelShown`.
T.CheckBox {
    id: root

    property bool labelShown: false
    // The box follows what its owner says and never changes by itself: the owner answers `toggleAsked`.
    signal toggleAsked

    implicitWidth: labelShown ? label.implicitWidth : 18
    implicitHeight: Math.max(18, labelShown ? label.implicitHeight : 0)
    hoverEnabled: true
    tristate: true
    focusPolicy: Qt.StrongFocus
    nextCheckState: () => {
        root.toggleAsked();
        return root.checkState;
    }
    Accessible.name: root.text
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: root.checkState === Qt.Checked
    Accessible.onToggleAction: root.toggleAsked()
    Accessible.onPressAction: root.toggleAsked()

    indicator: CheckMark {
        y: Math.round((root.height - height) / 2)
        x: 1
        enabled: root.enabled
        checkState: root.checkState
        isHovered: root.hovered

        FocusRing {
            shown: root.visualFocus
            radius: 6
        }
    }

    contentItem: BodyText {
        id: label

        // Beside the box.
        leftPadding: 28
        visible: root.labelShown
        text: root.labelShown ? root.text : ""
        verticalAlignment: Text.AlignVCenter
        color: root.enabled ? Theme.text : Theme.disabled
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
