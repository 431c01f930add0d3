import QtQuick
import Orvane

// A number with what it is above and a remark below.
Column {
    id: root

    property string caption: ""
    property string figure: ""
    property string note: ""
    property color color: Theme.text
    property int size: Theme.figureSize
    // A long caption takes so many lines rather than lose its end.
    property int captionLines: 1

    spacing: 2
    Accessible.role: Accessible.StaticText
    Accessible.name: root.caption + ": " + root.figure + (root.note === "" ? "" : ". " + root.note)

    CaptionText {
        width: parent.width
        text: root.caption
        wrapMode: root.captionLines > 1 ? Text.Wrap : Text.NoWrap
        maximumLineCount: root.captionLines
        Accessible.ignored: true
    }

    FigureText {
        width: parent.width
        text: root.figure
        color: root.color
        font.pixelSize: root.size
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 15
        Accessible.ignored: true
    }

    CaptionText {
        width: parent.width
        visible: text !== ""
        text: root.note
        wrapMode: Text.Wrap
        maximumLineCount: 2
        Accessible.ignored: true
    }
}
