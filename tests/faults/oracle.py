"""One judgement for every case: is each file where the journal says, whole and once, and does it come back?"""

import collections
import os
import re
import urllib.parse

from starts import USER
from trees import inventory
from world import VOLUMES

TRASHES = {b"home": b"home/.local/share/Trash", b"volume": b"volume/.Trash-%d" % USER}
# Of the program's own. Everything else has to be the user's, or a record of it.
OWN_FOLDERS = re.compile(
    rb"home/\.local(/share(/Trash(/(files|info))?)?)?|volume/\.Trash-\d+(/(files|info))?"
    rb"|home/Library(/Application Support(/Orvane)?)?|home/\.config(/orvane)?")
OWN_FILES = re.compile(
    rb"(home/\.local/share/Trash|volume/\.Trash-\d+)/directorysizes"
    rb"|home/Library/Application Support/Orvane/(undo_journal\.(json|lock|moves\.lock|restore\.lock|items|folders|origins)|duplicates\.lock|auto_organize\.lock)"
    rb"|home/\.local/share/orvane/map\.db(-journal)?"
    rb"|home/\.config/orvane/preferences\.json(\.lock)?")
RECORD = re.compile(rb"(?P<trash>.*)/info/(?P<name>[^/]*)\.trashinfo")


def shown(path):
    return os.fsdecode(path).encode("unicode_escape", "surrogateescape").decode("ascii", "replace")


def volume_of(path):
    return path.split(b"/", 1)[0]


def parents(path):
    while b"/" in path:
        path = path.rpartition(b"/")[0]
        yield path


class Journal:
    """Every entry of every run, as the program tells them."""

    def __init__(self, world, findings):
        self.runs = []
        self.entries_of = {}
        listed = world.run("history", "--json")
        check_end(listed, "history", findings)
        self.text = listed.output
        if listed.status != 0:
            findings.append(f"the journal cannot be read: {listed.errors.strip()}")
            return
        self.runs = listed.json
        for run in self.runs:
            told = world.run("history", "show", run["runId"], "--json")
            if told.status != 0:
                findings.append(f"run {run['runId']} cannot be shown: {told.errors.strip()}")
                continue
            self.entries_of[run["runId"]] = [
                (entry["action"], self.place(world, entry["originalURL"]), self.place(world, entry["trashedURL"]))
                for entry in told.json]

    @property
    def entries(self):
        return [entry for entries in self.entries_of.values() for entry in entries]

    @staticmethod
    def place(world, url):
        path = urllib.parse.unquote_to_bytes(url.removeprefix("file://"))
        return os.path.relpath(path, os.fsencode(world.top))


def check_end(result, what, findings):
    if result.timed_out:
        findings.append(f"{what} never ends")
    elif result.status < 0 and result.status != -9:
        findings.append(f"{what} dies of signal {-result.status}: {result.errors.strip()[-300:]}")


class Oracle:
    def __init__(self, world, truth, scenario):
        self.world = world
        self.scenario = scenario
        self.truth = {os.fsencode(volume) + b"/" + path: item
                      for volume in VOLUMES for path, item in truth[volume].items()}
        folders = [os.fsencode(folder) for folder in (*scenario.folders, "home/Downloads")]
        # Their times change when something enters or leaves them.
        self.loose = {above for folder in folders for above in parents(folder)} | set(folders)
        self.creates = tuple(os.fsencode(folder) for folder in scenario.creates)

    def state(self):
        found = {}
        for volume in VOLUMES:
            for path, item in inventory(self.world.path(volume)).items():
                found[os.fsencode(volume) + b"/" + path] = item
        return found

    def judge(self, result=None):
        """All that is wrong after a case, in words. Starts the program anew, as a user would."""
        findings = []
        if result is not None:
            check_end(result, "the command", findings)
        journal = Journal(self.world, findings)
        state = self.state()
        self.unfinished = False
        self.account(state, journal, findings)
        if self.unfinished and result is not None and result.status == 0:
            findings.append("says that all went well, but something is there twice")
        if self.world.run("history", "--json").output != journal.text:
            findings.append("a second start tells another history")
        findings += [f"a second start changes {shown(path)}" for path in different(state, self.state())]
        if result is not None and result.status == 0:
            moved = len(journal.entries) - 1
            if moved < self.scenario.moves:
                findings.append(f"says that all went well, but moved {moved} of {self.scenario.moves}")
        self.restore_all(journal, findings)
        return findings

    def restore_all(self, journal, findings):
        for run in journal.runs:
            if not any(self.is_away(entry, journal) for entry in journal.entries_of.get(run["runId"], [])):
                continue
            result = self.world.run("restore", run["runId"], "--yes", "--json")
            check_end(result, "restore", findings)
            # An item that came back before is reported as a warning.
            if result.status != 0 and not run["isRestored"]:
                findings.append(f"restore fails: {result.errors.strip()[:300]}")
        after = Journal(self.world, findings)
        if any(self.is_away(entry, after) for entry in after.entries):
            findings.append("after restore not all is back by the journal")
        self.account(self.state(), after, findings, "after restore ")

    def judge_weakly(self, *results):
        """Where the journal itself was damaged: is everything there, somewhere, as it was?"""
        findings = []
        for result in results:
            check_end(result, "the command", findings)
        check_end(self.world.run("history", "--json"), "the next start", findings)
        there = collections.Counter(map(lasting, self.state().values()))
        for path, item in self.truth.items():
            if item.kind == "folder" or there[lasting(item)] > 0:
                there[lasting(item)] -= 1
            else:
                findings.append(f"{shown(path)} is nowhere as it was")
        if inventory(self.world.path("outside")) != self.world.outside:
            findings.append("the tree beside the home has changed")
        return findings

    def is_away(self, entry, journal):
        """Is it still to come back? A copy that was set aside is not."""
        action, original, _ = entry
        return action != "restored" and not self.is_copy(original, journal)

    def is_copy(self, place, journal):
        """Is it a copy on another volume, which goes to the Trash when its original comes back?"""
        return any(place == trashed and volume_of(original) != volume_of(trashed)
                   for _, original, trashed in journal.entries)

    def account(self, state, journal, findings, when=""):
        """Holds every entry on the disks against what the journal says of it and what the user had."""
        origins = {trashed: original for action, original, trashed in journal.entries if action != "restored"}
        # Copies that were set aside when their originals came back.
        asides = {trashed: original for action, original, trashed in journal.entries if action == "restored"}
        instances = {}
        for path in state:
            origin = self.origin_of(path, origins, asides)
            if origin in self.truth:
                instances.setdefault(origin, []).append(path)
            elif not self.is_own(path, state, origins, asides):
                findings.append(f"{when}stray {state[path].kind} {shown(path)}")
        for origin, item in self.truth.items():
            places = instances.get(origin, [])
            self.check_places(origin, places, journal, findings, when, state)
            for place in places:
                self.check_item(origin, item, place, state[place], findings, when)
        self.check_links(instances, state, findings, when)
        moved_on = {original for action, original, _ in journal.entries if action != "restored"}
        for action, original, trashed in journal.entries:
            place = original if action == "restored" else trashed
            again = action == "restored" and original in moved_on
            if place not in state and not again and not self.is_copy(place, journal):
                findings.append(f"{when}journal says {action} {shown(place)}, which is not there")
        if inventory(self.world.path("outside")) != self.world.outside:
            findings.append(f"{when}the tree beside the home has changed")

    def origin_of(self, path, origins, asides):
        for _ in range(3):
            holder = next((above for above in (path, *parents(path)) if above in origins), None)
            if holder is None:
                # A copy whose original came back has its origin in an entry that is restored.
                holder = next((above for above in (path, *parents(path)) if above in asides), None)
                return path if holder is None or path in self.truth else asides[holder] + path[len(holder):]
            path = origins[holder] + path[len(holder):]
            if path in self.truth:
                return path
        return path

    def is_own(self, path, state, origins, asides):
        if state[path].kind == "folder":
            return bool(OWN_FOLDERS.fullmatch(path)) or path.startswith(self.creates) and bool(self.creates)
        record = RECORD.fullmatch(path)
        if record and record["trash"] in TRASHES.values():
            item = record["trash"] + b"/files/" + record["name"]
            return item in state and (item in origins or item in asides)
        return bool(OWN_FILES.fullmatch(path))

    def check_places(self, origin, places, journal, findings, when, state):
        same_volume = [place for place in places if volume_of(place) == volume_of(origin)]
        copies = [place for place in places if volume_of(place) != volume_of(origin)]
        if not same_volume:
            item = self.truth[origin]
            elsewhere = [path for path, other in state.items() if lasting(other) == lasting(item)]
            known = ", ".join(map(shown, elsewhere + copies)) or "nowhere"
            findings.append(f"{when}{shown(origin)} is gone from where the journal looks; its like is {known}")
        if len(same_volume) > 1 or len(copies) > 1:
            findings.append(f"{when}{shown(origin)} is there more than once: {', '.join(map(shown, places))}")
        if copies and origin in same_volume and not any(TRASHES[volume_of(copy)] in copy for copy in copies):
            # Cut off in between, as long as the journal knows: its restore sets the copy aside.
            known = any(entry[0] == "moved" and entry[2] in (copies[0], *parents(copies[0])) for entry in journal.entries)
            if known and not when:
                self.unfinished = True
            else:
                findings.append(f"{when}{shown(origin)} stays at its origin, and is copied to {shown(copies[0])}")
        for place in same_volume + copies:
            trash = TRASHES[volume_of(place)] + b"/files/"
            if place.startswith(trash):
                top = place[len(trash):].split(b"/")[0]
                if TRASHES[volume_of(place)] + b"/info/" + top + b".trashinfo" not in state:
                    findings.append(f"{when}{shown(place)} has no record in the Trash")

    def check_item(self, origin, item, place, found, findings, when):
        ignored = {}
        if volume_of(place) != volume_of(origin) or item.links == 0:
            ignored["links"] = found.links
        if item.kind == "folder" and origin in self.loose:
            ignored["modified"] = found.modified
        wanted = item._replace(**ignored)
        if not found.same_but(wanted):
            changes = [name for name in ("kind", "mode", "owner", "size", "modified", "content", "attributes", "links")
                       if getattr(found, name) != getattr(wanted, name)]
            findings.append(f"{when}{shown(place)} differs from {shown(origin)} in {', '.join(changes)}")

    def check_links(self, instances, state, findings, when):
        """Names that were one file are one file still."""
        groups = {}
        for origin, item in self.truth.items():
            if item.links > 1:
                groups.setdefault((volume_of(origin), item.inode), []).append(origin)
        for group in groups.values():
            inodes = {state[place].inode for origin in group for place in instances.get(origin, [])
                      if volume_of(place) == volume_of(origin)}
            if len(inodes) > 1:
                findings.append(f"{when}{', '.join(map(shown, group))} are no longer one file")


def lasting(item):
    return item.kind, item.mode, item.size, item.modified, item.content, item.attributes


def different(before, after):
    return sorted(path for path in before.keys() | after.keys() if before.get(path) != after.get(path))
