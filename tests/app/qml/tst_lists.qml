import QtQuick
import Orvane
import Orvane.Tests
import "qrc:/qt/qml/Orvane/components/TreemapLayout.js" as Layout

ComponentCase {
    id: test

    name: "Lists"

    readonly property var report: ({
            width: 600, height: 51, name: "report.pdf", place: "Downloads", size: "2 MB", chip: "Safe", canExplain: true
        })
    readonly property var pair: ({
            width: 600, height: 200, areas: [
                {label: "Caches", bytes: 9e9, count: 12, colorIndex: 0, children: []},
                {label: "Logs", bytes: 1, count: 1, colorIndex: 1, children: []},
                {label: "Nothing", bytes: 0, count: 0, colorIndex: 2, children: []}
            ]
        })

    // An item and all below it.
    function inside(item: Item): var {
        return Array.from(item.children).reduce((all, child) => all.concat(inside(child)), [item]);
    }

    Component {
        id: listComponent

        RowList {
            property var folds: []

            width: 400
            height: 306
            model: 1000000
            delegate: Item {
                width: 400
                height: 51
            }
            onRowFolded: (row, open) => folds.push([row, open])
        }
    }

    function test_keyboard_walks_a_million_rows() {
        const list = createTemporaryObject(listComponent, test) as RowList;
        list.forceActiveFocus();
        keyClick(Qt.Key_Down);
        compare(list.currentIndex, 1);
        keyClick(Qt.Key_PageDown);
        compare(list.currentIndex, 1 + list.pageRows);
        keyClick(Qt.Key_End);
        compare(list.currentIndex, 999999);
        verify(list.itemAtIndex(999999) !== null, "the row is in view");
        keyClick(Qt.Key_Down);
        compare(list.currentIndex, 999999, "the end is the end");
        keyClick(Qt.Key_Home);
        compare(list.currentIndex, 0);
        verify(list.itemAtIndex(0) !== null);
        verify(list.contentItem.children.length < 60, "rows out of sight are not there");
    }

    function test_keyboard_acts_on_the_current_row() {
        const list = createTemporaryObject(listComponent, test) as RowList;
        watch(list, "rowToggled");
        list.forceActiveFocus();
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Space);
        keyClick(Qt.Key_Return);
        compare(spy.count, 2);
        compare(spy.signalArguments[1][0], 1);
        keyClick(Qt.Key_Left);
        keyClick(Qt.Key_Right);
        compare(list.folds, [[1, false], [1, true]]);
    }

    function test_space_looks_at_items_where_rows_are_some() {
        const list = createTemporaryObject(listComponent, test, {canLook: true}) as RowList;
        watch(list, "lookAsked");
        list.forceActiveFocus();
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Space);
        keyClick(Qt.Key_Return);
        compare(spy.count, 1);
        compare(spy.signalArguments[0][0], 1);
    }

    function test_the_whole_row_toggles() {
        const row = make("ItemRow", report) as ItemRow;
        watch(row, "toggled");
        mouseClick(row, 300, 25);
        mouseClick(row, row.indent + 8, 25);
        compare(spy.count, 2);
    }

    function test_a_right_click_asks_for_the_menu_and_toggles_nothing() {
        const row = make("ItemRow", report) as ItemRow;
        watch(row, "menuAsked");
        mouseClick(row, 300, 25, Qt.RightButton);
        compare(spy.count, 1);
    }

    function test_a_narrow_row_shortens_the_place_and_keeps_the_remark() {
        const remark = "Installationsdatei oder Download, älter als eine Woche";
        const place = "Documents/Reports/2026/Archive of everything that came in since the spring";
        const row = make("ItemRow", Object.assign({}, report, {
            width: 632, height: 56, place: place, remark: remark, remarkLines: 2, age: "vor 9 Monaten",
            chip: "Unbedenklich", canOpenFolder: true, canKeep: true
        })) as ItemRow;
        const shown = () => inside(row).find(item => item.text?.endsWith(remark));
        verify(shown().text.startsWith("\u200eDocu") && shown().text.includes("…"), shown().text);
        for (const x of [300, -1]) {
            mouseMove(row, x, 25);
            verify(!shown().truncated, "pointed at and not, the remark is whole");
            verify(shown().mapToItem(row, 0, shown().height).y <= row.height);
        }
        mouseMove(row, 300, 25);
        tryVerify(() => inside(row).some(item => item.text === row.name + "\n\u200e" + place + " · " + remark));
        compare(row.Accessible.description.split(", ")[0], place + " · Installationsdatei oder Download");
    }

    Component {
        id: appsComponent

        FocusScope {
            property alias list: apps
            property alias after: afterButton

            width: 700
            height: 400

            RowList {
                id: apps

                width: 700
                height: 300
                model: ListModel {
                    ListElement { name: "Letters" }
                    ListElement { name: "Paint" }
                    ListElement { name: "Workbench" }
                }
                delegate: AppEntry {
                    width: 700
                    isFocused: ListView.isCurrentItem && apps.showsCurrent && apps.activeFocus
                    identifier: "com.example." + name
                    version: "1"
                    bytes: 1000
                    lastOpened: 0
                    isProtected: false
                    icon: ""
                    kindKey: ""
                    isOrphan: false
                    command: ""
                }
            }

            PlainButton {
                id: afterButton

                anchors.bottom: parent.bottom
                text: "After"
            }
        }
    }

    function test_tab_goes_to_the_action_of_a_row_and_past_the_others() {
        const scope = createTemporaryObject(appsComponent, test);
        scope.list.forceActiveFocus();
        keyClick(Qt.Key_Down);
        watch(scope.list.itemAtIndex(1), "reviewAsked");
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Return);
        compare(spy.count, 1);
        keyClick(Qt.Key_Tab);
        verify(scope.after.activeFocus);
    }

    Component {
        id: historyComponent

        RowList {
            id: history

            width: 632
            height: 400
            section.property: "day"
            section.delegate: DayHead {
                today: "2026-11-22"
            }
            model: ListModel {
                ListElement { day: "2026-11-22"; kind: 0; isLast: true; name: ""; place: ""; destination: "" }
                ListElement { day: "2026-11-22"; kind: 0; isLast: false; name: ""; place: ""; destination: "" }
                ListElement { day: "2026-11-22"; kind: 1; isLast: true; name: "a.log"; place: "Logs"; destination: "T" }
                ListElement { day: "2026-11-21"; kind: 0; isLast: true; name: ""; place: ""; destination: "" }
            }
            delegate: HistoryEntry {
                width: history.width
                date: 1795353600000
                titleKey: "run.clean"
                count: 3
                bytes: 734e6
                stateKey: "state.gone"
                canRestore: true
                expanded: !isLast
                origin: "by hand"
                actorSymbol: "cleanup"
                chosen: true
                itemCount: 3
                chosenCount: 2
                restorableCount: 2
                takenCount: 1
            }
        }
    }

    function heads(list: Item): var {
        return Array.from(list.contentItem.children).filter(child => child.visible && child.Accessible.role
                                                            === Accessible.Heading);
    }

    function test_days_stand_over_their_runs_and_the_keyboard_walks_runs_alone() {
        const list = createTemporaryObject(historyComponent, test) as RowList;
        compare(heads(list).map(head => head.Accessible.name).sort(), ["Today", "Yesterday"]);
        list.forceActiveFocus();
        verify(list.itemAtIndex(0).y >= 20, "the head of the day stands above");
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        compare(list.currentIndex, 3);
        keyClick(Qt.Key_Up);
        compare(list.itemAtIndex(list.currentIndex).name, "a.log");
        // The rows of a run join, runs stand apart, and the next day's head has its room.
        const bottom = row => list.itemAtIndex(row).y + list.itemAtIndex(row).height;
        compare(list.itemAtIndex(2).y, bottom(1));
        verify(list.itemAtIndex(3).y >= bottom(2) + 20);
    }

    Component {
        id: figuresComponent

        FigureCards {
            isKnown: true
            movedBytes: 48.3e9
            restoredBytes: 2.1e9
            inTrashBytes: 734e6
            weeks: Array.from({length: 12}, (unused, week) => ({start: 1787572800000 + week * 604800000,
                                                                bytes: week === 3 ? 0 : week * 1e9}))
        }
    }

    function test_figures_of_the_history_are_whole_data() {
        return ["en", "fr", "de", "ja", "ko", "zh-Hans", "zh-Hant", "es"].map(language => ({tag: language}));
    }

    function test_figures_of_the_history_are_whole(row) {
        Language.select(row.tag);
        const cards = createTemporaryObject(figuresComponent, test, {width: 632}) as FigureCards;
        waitForRendering(cards);
        for (const label of inside(cards).filter(item => item.truncated !== undefined && item.visible)) {
            verify(!label.truncated, label.text);
            verify(label.mapToItem(cards, 0, label.height).y <= cards.height, label.text);
        }
        Language.select("en");
    }

    function test_figures_of_the_history_are_read_in_words() {
        const cards = createTemporaryObject(figuresComponent, test, {width: 900}) as FigureCards;
        const names = inside(cards).map(item => item.Accessible.name);
        verify(names.includes("Moved in all: 48.3\u00a0GB"), names.join("|"));
        verify(names.includes("Still in the Trash: 734\u00a0MB"));
        const weeks = names.find(name => name.startsWith("By week: "));
        verify(weeks.startsWith("By week: Week from Nov 9, 2026: 11\u00a0GB; "), weeks);
        compare(weeks.split(";").length, 10, "weeks without a move are left out");
        cards.weeks = [];
        compare(inside(cards).map(item => item.Accessible.name).find(name => name.startsWith("By week: ")),
                "By week: nothing in the last twelve weeks");
    }

    function test_names_from_right_to_left_stay_in_their_column_data() {
        return ["BodyText", "TitleText", "ChoiceItem"].map(type => ({tag: type}));
    }

    function test_names_from_right_to_left_stay_in_their_column(row) {
        for (const name of ["تقرير.pdf", "דוח.pdf", "report.pdf"]) {
            const item = make(row.tag, {text: name, width: 300});
            compare(findLine(item, [name]).effectiveHorizontalAlignment, Text.AlignLeft, name);
        }
    }

    TextInput {
        id: ruler

        width: 500
        horizontalAlignment: TextInput.AlignLeft
    }

    function test_lines_begin_at_the_left_in_any_script_data() {
        return [
            {tag: "ItemRow", given: {place: "صور", remark: "old"}, parts: ["صور", "old"]},
            {tag: "FolderRow", given: {name: "", path: "~/صور"}, parts: ["~", "صور"]},
            {tag: "SectionHeader", given: {name: "תמונות → Media"}, parts: ["תמונות", "Media"]},
            {tag: "duplicates/DuplicateEntry", parts: ["صور", "a.jpg"], given: {
                place: "صور", name: "a.jpg", index: 0, kind: 1, copies: 2, bytes: 1, freed: 1, date: 0,
                checkState: Qt.Unchecked, isKept: false, thumbnail: "", symbol: "", expanded: true, keptReason: ""
            }}
        ];
    }

    function test_lines_begin_at_the_left_in_any_script(row) {
        const item = make(row.tag, Object.assign({width: 600}, row.tag === "ItemRow" ? report : {}, row.given));
        ruler.text = findLine(item, row.parts).text;
        const places = row.parts.map(part => ruler.positionToRectangle(ruler.text.indexOf(part)).x);
        verify(places[0] < places[1], places.join(", "));
    }

    function shows(item: Item, test: var): bool {
        return item.visible && (test(item) || Array.from(item.children).some(child => shows(child, test)));
    }

    function test_a_match_that_cannot_go_has_a_lock_and_no_box() {
        for (const state of [Qt.Unchecked, -1]) {
            const match = make("agent/AgentEntry", {
                width: 600, index: 0, kind: 1, name: "backup.zip", place: "Desktop", reason: "in the Trash already",
                risk: Chip.Kind.Safe, date: 0, bytes: 1, count: 1, expanded: true, destination: "", checkState: state
            });
            compare(shows(match, item => item instanceof Icon && (item as Icon).name === "lock"), state < 0);
            compare(shows(match, item => item instanceof CheckMark), state >= 0);
        }
    }

    function test_a_rule_keeps_room_for_its_name_data() {
        return [
            {tag: "short", path: "~/Documents", isCut: false},
            {tag: "long", path: "~/Documents/Archive/2026/Reports/For the yearly meeting/Printed", isCut: true}
        ];
    }

    function test_a_rule_keeps_room_for_its_name(row) {
        const rule = make("rules/RuleEntry", {
            width: 620, id: "rule", index: 0, name: "Reports of the Year", description: "", isEnabled: true,
            isBuiltIn: false, action: "moveToFolder", conditions: "", actionPath: row.path
        }) as RuleEntry;
        const chip = findLine(rule, [row.path]);
        compare(chip.truncated, row.isCut);
        verify(!findLine(rule, [rule.name]).truncated);
        verify(chip.mapToItem(rule, 0, 0).x > 250, "beside the name");
    }

    function test_treemap_shares_the_room_by_size_data() {
        return [
            {tag: "none", sizes: []},
            {tag: "one", sizes: [5]},
            {tag: "even", sizes: [4, 4, 4, 4]},
            {tag: "uneven", sizes: [1000, 300, 20, 7, 1]},
            {tag: "in no order", sizes: [3, 900, 1, 40, 900, 2]},
            {tag: "many", sizes: Array.from({length: 60}, (unused, index) => 100 - index)}
        ];
    }

    function test_treemap_shares_the_room_by_size(row) {
        const total = row.sizes.reduce((sum, size) => sum + size, 0);
        const boxes = Layout.boxes(row.sizes, 870, 224);
        compare(boxes.length, row.sizes.length);
        boxes.forEach((box, index) => {
            fuzzyCompare(box.width * box.height, row.sizes[index] / total * 870 * 224, 0.5);
            verify(box.x >= -0.01 && box.x + box.width <= 870.01);
            verify(box.y >= -0.01 && box.y + box.height <= 224.01);
            for (let other = 0; other < index; ++other)
                verify(!overlap(box, boxes[other]));
        });
    }

    function overlap(one: var, other: var): bool {
        const slack = 0.01;
        return one.x + slack < other.x + other.width && other.x + slack < one.x + one.width
               && one.y + slack < other.y + other.height && other.y + slack < one.y + one.height;
    }

    function test_every_area_can_be_clicked_however_small() {
        const treemap = make("Treemap", pair) as Treemap;
        compare(treemap.shown.length, 2);
        watch(treemap, "chosen");
        const small = treemap.places[1];
        mouseClick(treemap, small.x + small.width / 2 - 2, small.y + small.height / 2 - 2);
        compare(spy.count, 1);
        compare(spy.signalArguments[0][0].label, "Logs");
    }

    function test_another_picture_shows_its_own_areas_alone() {
        const treemap = make("Treemap", pair) as Treemap;
        const labels = () => Array.from(treemap.children).filter(child => child.visible && child.area).map(
            child => child.area.label);
        compare(labels(), ["Caches", "Logs"]);
        treemap.areas = [{label: "Alone", bytes: 5, count: 1, colorIndex: 0, children: []}];
        compare(labels(), ["Alone"]);
        watch(treemap, "chosen");
        mouseClick(treemap, treemap.width - 20, treemap.height - 20);
        compare(spy.signalArguments[0][0].label, "Alone");
        treemap.areas = ["a", "b", "c"].map(name => ({label: name, bytes: 5, count: 1, colorIndex: 0, children: []}));
        compare(labels(), ["a", "b", "c"]);
    }
}
