import QtQuick
import QtTest

// A test of components in a window, with one spy for their signals.
TestCase {
    property alias spy: signalSpy

    when: windowShown
    width: 700
    height: 500
    visible: true

    SignalSpy {
        id: signalSpy
    }

    function watch(target: QtObject, signalName: string) {
        spy.target = null;
        spy.signalName = signalName;
        spy.target = target;
        spy.clear();
    }
}
