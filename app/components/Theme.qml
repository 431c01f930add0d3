pragma Singleton

import QtQuick

// Colours, measures, type and motion of the whole window. `dark` and `reducedMotion` follow the system; whoever owns
// the window binds them.
QtObject {
    id: theme

    property bool dark: false
    property bool reducedMotion: false
    // The desktop's own; clear where it has none.
    property color systemAccent: "transparent"

    readonly property bool hasAccent: systemAccent.a > 0
    readonly property color far: dark ? "#FFFFFF" : "#000000"

    readonly property color background: dark ? "#11151B" : "#F5F6F8"
    readonly property color surface: dark ? "#1A2029" : "#FFFFFF"
    readonly property color sidebar: dark ? "#151A21" : "#EBEEF2"
    // Headers of groups within a list: the sidebar's colour, half mixed into the surface.
    readonly property color groupHeader: dark ? "#181D25" : "#F5F7F9"
    readonly property color text: dark ? "#E7ECF2" : "#18212C"
    readonly property color muted: dark ? "#97A3B2" : "#5A6675"
    // Texts and icons of controls that cannot be used now.
    readonly property color disabled: dark ? "#7C8998" : "#727E8D"
    readonly property color line: dark ? "#2A323D" : "#DDE3EA"
    // The outline of what lies over other cards, where no shadow lifts it.
    readonly property color raisedLine: dark ? "#3D4855" : "#DDE3EA"
    // The outline of a box that can be ticked, 3:1 against the surface.
    readonly property color boxLine: dark ? "#7C8998" : "#7B8796"
    readonly property color accent: hasAccent ? readable(systemAccent, dark ? surface : sidebar) : dark ? "#3FC4BC" : "#0E7A78"
    // Also for words on the soft accent.
    readonly property color accentHover: hasAccent ? readable(mixed(accent, far, 0.12), accentSoft)
                                                   : dark ? "#57CFC8" : "#0B6967"
    readonly property color inkOnAccent: dark ? hasAccent ? "#080B0E" : "#06201F" : "#FFFFFF"
    readonly property color accentSoft: hasAccent ? mixed(surface, systemAccent, 0.08) : dark ? "#13393A" : "#DCF0EE"
    readonly property color hover: dark ? "#202731" : "#F3F6F8"
    readonly property color safe: dark ? "#5CCB92" : "#1F7A4D"
    readonly property color safeSoft: dark ? "#173527" : "#DFF3E8"
    readonly property color review: dark ? "#E7B25C" : "#8F5A08"
    readonly property color reviewSoft: dark ? "#3A2D14" : "#FBEFD7"
    readonly property color manual: dark ? "#9AA6B5" : "#566070"
    readonly property color manualSoft: dark ? "#272E38" : "#E8EBF0"
    // The used part of a disk.
    readonly property color used: dark ? "#8B98A8" : "#8793A2"
    readonly property color tooltip: dark ? "#E7ECF2" : "#18212C"
    readonly property color actionOnTooltip: dark ? "#0B6967" : "#6FDAD3"
    readonly property color inkOnTooltip: dark ? "#11151B" : "#FFFFFF"
    readonly property color scrim: dark ? "#99000000" : "#59101820"
    readonly property color shadow: dark ? "#00000000" : "#08101820"

    // One for each category in the order of their declaration, from the start again after the last. White text on each
    // meets WCAG AA.
    readonly property list<color> categories: [
        "#1F7A70", "#7657B3", "#5266C4", "#8F6200", "#557A1C", "#B5503F", "#AE4A7E", "#84603C", "#56707F", "#2B7CAB"
    ]
    readonly property color inkOnCategory: "#FFFFFF"

    function mixed(one: color, other: color, share: real): color {
        return Qt.rgba(one.r + (other.r - one.r) * share, one.g + (other.g - one.g) * share,
                       one.b + (other.b - one.b) * share, 1);
    }

    // Relative luminance as the Web Content Accessibility Guidelines define it.
    function luminance(color: color): double {
        return 0.2126 * linear(color.r) + 0.7152 * linear(color.g) + 0.0722 * linear(color.b);
    }
    function linear(part: double): double {
        return part <= 0.03928 ? part / 12.92 : Math.pow((part + 0.055) / 1.055, 2.4);
    }

    // The colour, darker or lighter until it can be read on the ground.
    function readable(color: color, ground: color): color {
        const onGround = luminance(ground) + 0.05;
        let result = color;
        for (let share = 0; share < 1; share += 0.04) {
            result = mixed(color, far, share);
            const own = luminance(result) + 0.05;
            if (Math.max(own, onGround) / Math.min(own, onGround) >= 4.6 && (own > onGround) === dark)
                break;
        }
        return result;
    }

    function category(index: int): color {
        return theme.categories[Math.max(0, index) % theme.categories.length];
    }

    readonly property int unit: 4
    readonly property int margin: 28
    readonly property int gap: 16
    readonly property int sidebarWidth: 212
    readonly property int controlHeight: 36
    readonly property int cardRadius: 14
    readonly property int controlRadius: 8
    // Below this width of the detail area screens put side by side what else stands below one another.
    readonly property int narrow: 780
    // From this width of the detail area on, they put cards side by side that else stand below one another.
    readonly property int wide: 1220

    readonly property int titleSize: 22
    readonly property int figureSize: 24
    readonly property int headingSize: 15
    readonly property int textSize: 14
    readonly property int captionSize: 12

    readonly property int shortMotion: reducedMotion ? 0 : 120
    readonly property int longMotion: reducedMotion ? 0 : 180
}
