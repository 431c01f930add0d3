import QtQuick
import QtTest

// A test of components in a window, with one spy for their signals.
TestCase {
    id: root

    property alias spy: signalSpy

    when: windowShown
    width: 700
    height: 500
    visible: true

    SignalSpy {
        id: signalSpy
    }

    // A component of the window by its file below app, or below app/components, with these properties.
    function make(file: string, properties = {}): QtObject {
        const place = file.includes("/") ? file : "components/" + file;
        const component = Qt.createComponent("qrc:/qt/qml/Orvane/" + place + ".qml");
        verify(component.status === Component.Ready, component.errorString());
        return createTemporaryObject(component, root, properties);
    }

    function watch(target: QtObject, signalName: string) {
        spy.target = null;
        spy.signalName = signalName;
        spy.target = target;
        spy.clear();
    }

    // The text below an item that holds all parts.
    function findLine(item: Item, parts: var): Text {
        if (item instanceof Text && parts.every(part => (item as Text).text.includes(part)))
            return item as Text;
        for (let i = 0; i < item.children.length; ++i) {
            const found = findLine(item.children[i], parts);
            if (found)
                return found;
        }
        return null;
    }
}
