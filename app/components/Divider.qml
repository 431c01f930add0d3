import QtQuick
import Orvane

Rectangle {
    implicitHeight: 1
    implicitWidth: 1
    color: Theme.line
    Accessible.ignored: true
}
