import QtQuick

// Scrolls an area to the control in it that gets the keyboard.
Item {
    id: root

    required property Flickable area
    readonly property Item focused: Window.activeFocusItem

    function isInside(item: Item): bool {
        for (let at = item; at; at = at.parent) {
            if (at === root.area.contentItem)
                return true;
        }
        return false;
    }

    onFocusedChanged: {
        if (!focused || !isInside(focused) || focused.height > area.height)
            return;
        const top = focused.mapToItem(area.contentItem, 0, 0).y - 12;
        const bottom = top + focused.height + 24;
        const maxY = Math.max(0, area.contentHeight - area.height);
        if (top < area.contentY)
            area.contentY = Math.max(0, top);
        else if (bottom > area.contentY + area.height)
            area.contentY = Math.min(maxY, bottom - area.height);
    }
}
