import QtQuick
import QtQuick.Layouts
import Orvane

ComponentCase {
    id: test

    name: "Controls"

    function init() {
        failOnWarning(/[Bb]inding loop/);
    }

    function test_box_asks_and_does_not_change_by_itself() {
        const box = make("TriStateBox", {text: "Box", checkState: Qt.PartiallyChecked}) as TriStateBox;
        watch(box, "toggleAsked");
        mouseClick(box);
        compare(spy.count, 1);
        compare(box.checkState, Qt.PartiallyChecked);
        box.forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(spy.count, 2);
        compare(box.checkState, Qt.PartiallyChecked);
    }

    Component {
        id: switchComponent

        ToggleSwitch {
            property bool answers: false

            text: "Switch"
            onToggleAsked: if (answers) on = !on
        }
    }

    function test_switch_follows_its_owner() {
        const toggle = createTemporaryObject(switchComponent, test) as ToggleSwitch;
        watch(toggle, "toggleAsked");
        mouseClick(toggle);
        compare(spy.count, 1);
        compare(toggle.checked, false, "refused: stays off");
        toggle.answers = true;
        mouseClick(toggle);
        compare(toggle.checked, true);
        toggle.on = false;
        compare(toggle.checked, false, "changed from elsewhere: follows");
    }

    function test_button_answers_pointer_and_keyboard() {
        const button = make("PrimaryButton", {text: "Go"}) as PrimaryButton;
        watch(button, "clicked");
        mouseClick(button);
        button.forceActiveFocus();
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Space);
        compare(spy.count, 3);
        button.enabled = false;
        mouseClick(button);
        compare(spy.count, 3);
    }

    function test_button_text_is_whole_at_its_own_width_and_cut_below() {
        const button = make("PrimaryButton", {text: "A rather long text", symbol: "search"}) as PrimaryButton;
        const label = findLine(button, ["A rather long text"]);
        verify(label !== null);
        verify(!label.truncated);
        button.width = 90;
        verify(label.truncated);
        verify(label.mapToItem(button, label.width, 0).x <= button.width);
    }

    function test_menu_button_shows_the_choice_and_hands_over_another() {
        const button = make("MenuButton", {label: "Order", choices: ["Size", "Date", "Name"], current: 0}) as MenuButton;
        compare(button.text, "Size");
        watch(button, "chosen");
        button.forceActiveFocus();
        keyClick(Qt.Key_Space);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        tryCompare(spy, "count", 1);
        compare(spy.signalArguments[0][0], 1);
        compare(button.text, "Size", "the owner decides");
    }

    function test_escape_empties_the_search() {
        const field = make("SearchField") as SearchField;
        field.forceActiveFocus();
        keyClick(Qt.Key_A);
        compare(field.text, "a");
        keyClick(Qt.Key_Escape);
        compare(field.text, "");
    }

    function test_alert_answers() {
        const dialog = make("AlertDialog", {title: "Title", message: "Message", rejectText: "No"}) as AlertDialog;
        watch(dialog, "confirmed");
        dialog.open();
        tryCompare(dialog, "opened", true);
        keyClick(Qt.Key_Return);
        tryCompare(spy, "count", 1);
        tryCompare(dialog, "visible", false);
        dialog.open();
        tryCompare(dialog, "opened", true);
        keyClick(Qt.Key_Escape);
        tryCompare(dialog, "visible", false);
        compare(spy.count, 1, "leaving is no yes");
    }

    function test_toast_offers_undo_and_goes() {
        const toast = make("Toast") as Toast;
        watch(toast, "acted");
        toast.show("Moved", "Undo");
        tryCompare(toast.bubble, "opened", true);
        const label = findLine(toast.bubble.contentItem, ["Undo"]);
        verify(label !== null);
        mouseClick(label);
        compare(spy.count, 1);
        tryCompare(toast.bubble, "visible", false);
        toast.show("Moved", "");
        tryCompare(toast.bubble, "opened", true);
    }

    Component {
        id: tipComponent

        Item {
            id: place

            property alias tip: tip

            width: 100
            height: 30

            Tip {
                id: tip

                text: "Why"
                delay: 0
            }
        }
    }

    function test_tip_is_made_when_it_is_shown_and_stands_over_its_parent() {
        const place = createTemporaryObject(tipComponent, test);
        compare(place.tip.bubble, null);
        place.tip.shown = true;
        tryCompare(place.tip.bubble, "opened", true);
        compare(place.tip.bubble.parent, place);
        place.tip.shown = false;
        tryCompare(place.tip.bubble, "visible", false);
    }

    Component {
        id: contentComponent

        Column {
            property bool holds: false

            Item { width: 10; height: 10 }

            OnlyWhen {
                holds: parent.holds

                Item { objectName: "content"; width: 10; height: 10 }
            }
        }
    }

    function test_content_is_made_in_its_place_while_a_condition_holds() {
        const column = createTemporaryObject(contentComponent, test) as Column;
        compare(findChild(column, "content"), null);
        column.holds = true;
        tryVerify(() => findChild(column, "content").y === 10);
        column.holds = false;
        tryVerify(() => findChild(column, "content") === null);
    }

    function test_run_strip_goes_from_progress_to_outcome() {
        const strip = make("RunStrip", {width: 600, outcome: ""}) as RunStrip;
        verify(!strip.visible);
        strip.isWorking = true;
        strip.done = 3;
        strip.total = 12;
        verify(strip.visible);
        compare(strip.value, 0.25);
        verify(!strip.isResult);
        strip.isWorking = false;
        strip.outcome = "Done";
        strip.canUndo = true;
        verify(strip.isResult);
        verify(strip.undoText !== "");
        strip.dismissed();
        verify(!strip.visible);
        strip.outcome = "Done again";
        verify(strip.visible, "a new outcome shows although the last was dismissed");
    }

    Component {
        id: headerComponent

        ScreenHeader {
            width: 1000
            title: "Duplikate"
            subtitle: "214 Gruppen · 512 Kopien"
            aside: "von jeder bleibt immer eine"

            SearchField {}

            PlainButton {
                text: "Jetzt suchen"
            }
        }
    }

    function test_header_leaves_out_what_a_line_has_no_room_for_and_puts_its_actions_below_at_last() {
        const header = createTemporaryObject(headerComponent, test) as ScreenHeader;
        verify(findLine(header, ["214 Gruppen · 512 Kopien · von jeder bleibt immer eine"]) !== null);
        const height = header.implicitHeight;
        header.width = 600;
        verify(!header.stacked);
        compare(findLine(header, ["214\u00a0Gruppen"]).text, "214\u00a0Gruppen · 512\u00a0Kopien");
        compare(header.implicitHeight, height);
        header.width = 300;
        verify(header.stacked);
        verify(header.implicitHeight > height);
    }

    Component {
        id: columnsComponent

        CardColumns {
            width: 620
            first: [
                Card { objectName: "one"; Layout.fillWidth: true; implicitHeight: 100 },
                Card { objectName: "two"; Layout.fillWidth: true; implicitHeight: 60 }
            ]
            second: Card { objectName: "three"; Layout.fillWidth: true; implicitWidth: 400; implicitHeight: 40 }
        }
    }

    function test_cards_stand_in_one_column_or_in_two_of_one_width() {
        const columns = createTemporaryObject(columnsComponent, test) as CardColumns;
        const place = name => {
            const card = findChild(columns, name);
            return card.mapToItem(columns, 0, 0, card.width, card.height);
        };
        tryVerify(() => place("three").y === 100 + 60 + 2 * Theme.gap);
        compare(place("three").width, 620);
        columns.isSplit = true;
        tryVerify(() => place("three").y === 0);
        compare(place("one").width, (620 - Theme.gap) / 2);
        compare(place("three").width, place("one").width);
        compare(place("two").y, 100 + Theme.gap);
    }

    function test_empty_state_keeps_its_button_inside_data() {
        return [{tag: "low", height: 130}, {tag: "high", height: 400}];
    }

    function test_empty_state_keeps_its_button_inside(row) {
        const state = make("EmptyState", {
            width: 600, height: row.height, drawing: "search", text: "Nothing matches the search and the filters.",
            action: "Show All"
        }) as EmptyState;
        compare(state.showsDrawing, row.height > 300);
        const label = findLine(state, ["Show All"]);
        const bottom = label.mapToItem(state, 0, label.height).y;
        verify(bottom < row.height - 8, bottom + " of " + row.height);
    }
}
