pragma Singleton

import QtQuick
import Orvane

// Numbers and dates as text in the window's language. A binding that calls one of these is evaluated anew when the
// language changes, since each reads `Format.revision`.
QtObject {
    function bytes(value: double): string {
        return Format.revision >= 0 ? Format.bytes(value) : "";
    }

    // With so many digits that count: sizes at a glance. Whole bytes stay whole.
    function roughBytes(value: double, digits: int): string {
        return bytes(value < 1e3 ? value : Number(value.toPrecision(digits)));
    }

    function count(value: double): string {
        return Format.revision >= 0 ? Format.count(value) : "";
    }

    function percent(value: double): string {
        return Format.revision >= 0 ? Format.percent(value) : "";
    }

    // Milliseconds since 1970; 0 or less stands for no date and gives an empty text. So for the next ones.
    function dateTime(value: double): string {
        return Format.revision >= 0 && value > 0 ? Format.dateTime(value) : "";
    }

    // A date near today by its name: "today at 15:30". Capitalized where it stands alone.
    function moment(value: double): string {
        return Format.revision >= 0 && value > 0 ? Format.moment(value, true) : "";
    }

    function momentInText(value: double): string {
        return Format.revision >= 0 && value > 0 ? Format.moment(value, false) : "";
    }

    function day(value: double): string {
        return Format.revision >= 0 && value > 0 ? Format.day(value) : "";
    }

    // The time of day.
    function time(value: double): string {
        return Format.revision >= 0 && value > 0 ? Format.time(value) : "";
    }

    // "Today", "Yesterday" or the date, as a head. Both days as YYYY-MM-DD.
    function dayHead(day: string, today: string): string {
        return Format.revision >= 0 ? Format.dayHead(day, today) : "";
    }

    function age(value: double): string {
        return Format.revision >= 0 && value > 0 ? Format.age(value) : "";
    }

    // The text for a count of things, with the grouped number in the place of %1.
    function counted(key: string, value: double): string {
        return Format.revision >= 0 ? Format.counted(key, value) : "";
    }

    // A path, or parts of a line, that begin at the left whatever the script of the first is: a left-to-right mark before
    // them (U+200E) sets the direction of the line.
    function fromLeft(text: string): string {
        return text === "" ? "" : "\u200e" + text;
    }

    // The texts that are not empty, with the separator between them.
    function joined(texts: var, separator: string): string {
        return texts.filter(text => text !== "").join(separator);
    }

    // The first texts of a list, a line each, and dots where there are more.
    function firstLines(texts: var, maxLines: int): string {
        return texts.slice(0, maxLines).join("\n") + (texts.length > maxLines ? "\n…" : "");
    }

    // The word and its description for a risk: 0 safe, 1 review, 2 manual.
    function risk(value: int): string {
        return [qsTr("risk.safe"), qsTr("risk.review"), qsTr("risk.manual")][value] ?? "";
    }

    function riskDescription(value: int): string {
        return [qsTr("risk.safe.desc"), qsTr("risk.review.desc"), qsTr("risk.manual.desc")][value] ?? "";
    }
}
