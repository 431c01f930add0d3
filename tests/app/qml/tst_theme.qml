import QtQuick
import QtTest
import Orvane
import Orvane.Tests

TestCase {
    id: test

    name: "ThemeAndTexts"

    function cleanup() {
        Theme.dark = false;
        Theme.systemAccent = "transparent";
        Language.select("en");
    }

    function contrast(one: color, other: color): double {
        const [low, high] = [Theme.luminance(one), Theme.luminance(other)].sort((left, right) => left - right);
        return (high + 0.05) / (low + 0.05);
    }

    function test_text_can_be_read_data() {
        const accents = ["transparent", "#3584E4", "#F6D32D", "#E01B24", "#000000", "#FFFFFF", "#808080"];
        const rows = [];
        for (const accent of accents) {
            rows.push({tag: accent + " in the light", dark: false, accent: accent},
                      {tag: accent + " in the dark", dark: true, accent: accent});
        }
        return rows;
    }

    function test_text_can_be_read(row) {
        Theme.dark = row.dark;
        Theme.systemAccent = row.accent;
        // Inks, each with the grounds that it stands on: texts, and shapes, which need less.
        const texts = {
            text: "surface background sidebar accentSoft hover groupHeader",
            muted: "surface background sidebar accentSoft hover groupHeader",
            accent: "surface background",
            accentHover: "accentSoft",
            inkOnAccent: "accent accentHover",
            review: "surface background hover groupHeader reviewSoft",
            safe: "safeSoft",
            manual: "manualSoft",
            actionOnTooltip: "tooltip",
            inkOnTooltip: "tooltip"
        };
        const shapes = {
            boxLine: "surface hover groupHeader",
            used: "surface",
            accent: "surface background sidebar",
            disabled: "surface background manualSoft"
        };
        for (const [inks, least] of [[texts, 4.5], [shapes, 3]])
            for (const ink of Object.keys(inks))
                for (const ground of inks[ink].split(" ")) {
                    const found = contrast(Theme[ink], Theme[ground]);
                    verify(found >= least, ink + " on " + ground + ": " + found.toFixed(2));
                }
        for (const ground of Theme.categories)
            verify(contrast(Theme.inkOnCategory, ground) >= 4.5, ground + ": " + contrast(Theme.inkOnCategory, ground));
    }

    function test_counted_texts_data() {
        return [
            {tag: "English 0", code: "en", value: 0, text: "0 items"},
            {tag: "English 1", code: "en", value: 1, text: "1 item"},
            {tag: "English many", code: "en", value: 1204, text: "1,204 items"},
            {tag: "French 0", code: "fr", value: 0, text: "0 élément"},
            {tag: "French 2", code: "fr", value: 2, text: "2 éléments"},
            {tag: "German many", code: "de", value: 1204, text: "1.204 Objekte"},
            {tag: "Japanese", code: "ja", value: 3, text: "3 項目"}
        ];
    }

    function test_counted_texts(row) {
        Language.select(row.code);
        compare(Texts.counted("count.items", row.value), row.text);
    }

    Component {
        id: labelComponent

        BodyText {
            text: Texts.bytes(18.4e9) + " " + Texts.counted("count.items", 1204)
        }
    }

    function test_figures_follow_the_language_at_once() {
        const label = createTemporaryObject(labelComponent, test) as BodyText;
        const english = label.text;
        Language.select("de");
        verify(label.text !== english);
        verify(label.text.includes("1.204 Objekte"), label.text);
        Language.select("en");
        compare(label.text, english);
    }

    function test_no_date_is_no_text() {
        compare(Texts.dateTime(0), "");
        compare(Texts.age(0), "");
        compare(Texts.day(-1), "");
    }

    function test_lines_of_a_list_are_cut_short() {
        compare(Texts.firstLines(["a", "b"], 2), "a\nb");
        compare(Texts.firstLines(["a", "b", "c"], 2), "a\nb\n…");
        compare(Texts.joined(["a", "", "b"], " · "), "a · b");
    }
}
