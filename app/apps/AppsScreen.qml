pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// The installed applications; each is reviewed with what it would leave behind before it goes.
Page {
    id: root

    required property AppState appState
    required property AppsModel model

    readonly property bool isEmpty: model.appCount === 0

    function find() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
        search.selectAll();
    }

    function undo() {
        if (model.canUndo && !model.isWorking)
            model.undo();
    }

    function startWork() {
        if (!model.isListing)
            model.list();
    }

    function copyCommand(row: int) {
        model.copyCommand(row);
        copied.show(qsTr("apps.copied"), "");
    }

    title: qsTr("nav.apps")
    subtitle: isEmpty ? qsTr("apps.subtitle") : Texts.counted("apps.count", model.appCount)
    aside: isEmpty ? "" : qsTr("apps.subtitle")
    actions: [
        SearchField {
            id: search

            visible: !root.isEmpty || root.model.searchText !== ""
            text: root.model.searchText
            onTextChanged: if (text !== root.model.searchText) root.model.searchText = text
        },
        MenuButton {
            visible: !root.isEmpty
            label: qsTr("cleanup.sort_by")
            keys: root.model.sortKeys
            current: root.model.sort
            onChosen: index => root.model.sort = index
        },
        PlainButton {
            visible: !root.isEmpty
            enabled: !root.model.isListing
            symbol: "refresh"
            text: qsTr("action.refresh")
            onClicked: root.model.list()
        }
    ]

    Component.onCompleted: if (!model.hasListed && !model.isListing) model.list()

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.gap

        ProgressStrip {
            Layout.fillWidth: true
            visible: root.model.isListing
            title: qsTr("apps.listing")
            figures: Texts.counted("apps.count", root.model.appCount)
            onCancelAsked: root.model.cancel()
        }

        RunStrip {
            Layout.fillWidth: true
            run: root.model
            isWorking: root.model.isWorking
            workTitle: qsTr("apps.uninstalling")
            done: root.model.progressDone
            total: root.model.progressTotal
            detail: pace === "" ? root.model.progressText : pace
            outcome: root.model.resultText
            resultNote: root.model.resultNote
            canUndo: root.model.canUndo
            undoLabel: qsTr("dashboard.undo")
            onCancelAsked: root.model.cancel()
            onUndoAsked: root.model.undo()
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.messages.length > 0 && !root.model.isWorking
            isWarning: true
            text: Texts.firstLines(root.model.messages, 3)
        }

        Card {
            Layout.fillWidth: true
            Layout.fillHeight: true
            flush: true

            TextMetrics {
                id: copyLabel

                text: qsTr("apps.copy_command")
                font.pixelSize: Theme.textSize
                font.weight: Font.Medium
            }

            TextMetrics {
                id: reviewLabel

                text: qsTr("apps.review")
                font: copyLabel.font
            }

            ColumnHeads {
                id: heads

                width: parent.width
                visible: list.count > 0
                lead: 62
                // The room of the rows' button, and the margins around it.
                trail: 40 + Math.ceil(Math.max(copyLabel.advanceWidth, reviewLabel.advanceWidth))
                columns: [
                    {key: "sort.name", sort: AppsModel.Name, width: 0, falls: false},
                    {key: "sort.last_used", sort: AppsModel.LastUse, width: 110, falls: false},
                    {key: "sort.size", sort: AppsModel.Size, width: 80, falls: true}
                ]
                current: root.model.sort
                isReversed: root.model.isReversed
                onSortAsked: sort => root.model.sortBy(sort)
            }

            RowList {
                id: list

                anchors.top: heads.bottom
                anchors.bottom: parent.bottom
                width: parent.width
                visible: count > 0
                label: qsTr("nav.apps")
                model: root.model
                onRowToggled: row => root.model.review(row)
                onRowMenuAsked: row => menu.showFor(row, true)
                delegate: AppEntry {
                    width: list.width
                    isFocused: ListView.isCurrentItem && list.showsCurrent && list.activeFocus
                    onCopyAsked: root.copyCommand(index)
                    onReviewAsked: {
                        list.currentIndex = index;
                        root.model.review(index);
                    }
                    onMenuAsked: menu.showFor(index, false)
                }
            }

            EmptyState {
                anchors.fill: parent
                visible: list.count === 0
                drawing: root.model.searchText !== "" ? "search" : "apps"
                title: root.model.searchText === "" && root.model.hasListed ? qsTr("apps.empty_title") : ""
                text: root.model.searchText !== "" ? qsTr("apps.nothing_matches")
                                                   : root.model.hasListed ? qsTr("apps.empty_text")
                                                                          : qsTr("dashboard.scanning_text")
                action: root.model.searchText !== "" ? qsTr("action.clear_search")
                                                     : root.model.hasListed ? qsTr("action.refresh") : ""
                symbol: root.model.searchText !== "" ? "" : "refresh"
                onActed: root.model.searchText !== "" ? search.clear() : root.model.list()
            }
        }
    }

    ItemMenu {
        id: menu

        property bool canReview: false
        property bool hasCommand: false

        function showFor(row: int, byKey: bool) {
            const entry = list.itemAtIndex(row) as AppEntry;
            list.currentIndex = row;
            canReview = entry?.canReview ?? false;
            hasCommand = entry?.hasCommand ?? false;
            show(root.model.placeAt(row), entry, byKey);
        }

        appState: root.appState

        ChoiceItem {
            isChoice: false
            visible: !menu.hasCommand
            enabled: menu.canReview
            symbol: "trash"
            text: qsTr("apps.review")
            onTriggered: root.model.review(list.currentIndex)
        }

        ChoiceItem {
            isChoice: false
            visible: menu.hasCommand
            symbol: "edit"
            text: qsTr("apps.copy_command")
            onTriggered: root.copyCommand(list.currentIndex)
        }
    }

    Toast {
        id: copied
    }

    Connections {
        target: root.model

        function onReviewChanged() {
            if (root.model.isReviewing && !review.sheet)
                review.open();
        }
    }

    OnDemand {
        id: review

        UninstallSheet {
            appState: root.appState
            model: root.model
            visible: root.model.isReviewing
            onClosed: {
                root.model.closeReview();
                list.forceActiveFocus();
            }
        }
    }
}
