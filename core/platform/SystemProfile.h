#pragma once

#include <cstdint>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The data that a system adds to the given tables. Rows of a profile are asked after the given ones and change none
// of them; without a profile everything answers as the given tables say.
//
// Patterns are relative to a base folder: in a component "*" stands for any characters, and "{a,b}" for one of several
// texts.
class SystemProfile {
 public:
  virtual ~SystemProfile() = default;

  struct FileKind {
    std::string_view extension;  // lower case, without the dot
    std::string_view category;   // of the organizer
  };
  [[nodiscard]] virtual std::span<const FileKind> fileKinds() const noexcept { return {}; }
  // Folders that nobody may grant, nor anything in them. Absolute.
  [[nodiscard]] virtual std::span<const std::string_view> systemFolders() const noexcept { return {}; }

  // Folders at which patterns begin.
  enum class Base : std::uint8_t { root, home, cache, config, data, state, runtime };
  // Where a base is now: an absolute path, standardised; empty where the system has none.
  [[nodiscard]] virtual std::string baseFolder(Base /*base*/) const { return {}; }

  // A place that nothing lists or moves, with everything inside and whatever folders are named. Neither is a folder
  // moved that could hold one.
  struct ProtectedPlace {
    Base base;
    std::string_view pattern;
    std::string_view content;      // what is there, in English: "key rings of the desktop"
    std::string_view except = {};  // pattern below the place: may go, with everything inside
  };
  // The rows at Base::root leave out a home folder that lies in one of them.
  [[nodiscard]] virtual std::span<const ProtectedPlace> protectedPlaces() const noexcept { return {}; }
  // Names that are protected with everything inside wherever they stand; each belongs to a store whose files must not
  // move singly.
  struct ProtectedName {
    std::string_view name;
    std::string_view content;
  };
  [[nodiscard]] virtual std::span<const ProtectedName> protectedNames() const noexcept { return {}; }
  // Whether a protected place may go whole all the same, as the program that it belonged to is gone. Looks at the disk.
  [[nodiscard]] virtual bool isLeftOver(const std::string& /*path*/) const { return false; }
  // Whether an item is protected by what it holds or by who uses it now, which no name tells. Looks at the disk.
  [[nodiscard]] virtual bool isStoreInUse(const std::string& /*path*/) const { return false; }

  // How many items a known place is.
  enum class Unit : std::uint8_t {
    whole,  // what fits is one item, sized in full
    file,   // the same, and only where it is a file
  };
  // Where a program that runs leaves a sign of it.
  struct BusySign {
    // How the sign tells.
    enum class Check : std::uint8_t {
      mark,      // a link or a file that names its process, or a file with a lock
      profiles,  // a list of profiles: marks lie in the folders that it names
      sandbox,   // the description of a sandbox, which names its program
      groups,    // the control groups of a process, one of which is named after its program
    };
    Base base;
    std::string_view pattern;  // "%" stands for the component that names the program
    Check check = Check::mark;
  };
  // A place whose content can go, or can be looked through, though no folder that holds it is granted or walked. The
  // first row that fits decides.
  struct KnownPlace {
    Base base;
    std::string_view pattern;
    Unit unit;
    std::string_view category;            // raw value of a scan category
    std::string_view label;               // raw value of a risk label
    std::string_view reason;              // key of a text, in which "%1" is the program
    std::string_view program;             // a proper name; where empty, a component of the place is taken for it
    std::span<const BusySign> busy = {};  // any of them tells
    std::uint8_t programAt = 0;           // index of that component below the base
  };
  [[nodiscard]] virtual std::span<const KnownPlace> knownPlaces() const noexcept { return {}; }
  // The name that people know of a program whose places are named otherwise. The first row that fits decides.
  struct ProgramTitle {
    std::string_view program;  // pattern of the component that tells it
    std::string_view title;
  };
  [[nodiscard]] virtual std::span<const ProgramTitle> programTitles() const noexcept { return {}; }
  // Words by which people call a program of known places otherwise than its places do: lower case, separated by one
  // space.
  struct ProgramAlias {
    std::string_view phrase;
    std::string_view program;
    bool isPlace = false;  // they name the place itself, which no program is taken for
  };
  [[nodiscard]] virtual std::span<const ProgramAlias> programAliases() const noexcept { return {}; }
  // Whether the sign at the path tells of a program that runs now; also where it cannot be read. Looks at the disk.
  [[nodiscard]] virtual bool isBusySign(const std::string& /*path*/, BusySign::Check /*check*/,
                                        std::string_view /*program*/) const {
    return false;
  }

  // Whether a program of this user, other than this one, has a file open at the path or below it. May be a second old.
  [[nodiscard]] virtual bool hasOpenFiles(const std::string& /*path*/) const { return false; }

  // The items in the user's Trash folders on other volumes, which are shown as what lies in the one at home. Leaves out
  // a disk that does not answer in time and one of another machine.
  [[nodiscard]] virtual std::vector<std::string> itemsInOtherTrashes(const std::stop_token& /*stop*/) const {
    return {};
  }
  // Whether a path has the form of such an item.
  [[nodiscard]] virtual bool isInOtherTrash(std::string_view /*path*/) const { return false; }

  // A file that its name and place tell, asked where the given rows know nothing of it. The first row that fits
  // decides. No folder is one.
  struct NamedFile {
    enum class Where : std::uint8_t {
      anywhere,
      downloads,    // the user's downloads folder, with everything below
      screenshots,  // a folder with one of the names of screenshotFolders()
      screencasts,  // where the desktop keeps them, with everything below
    };
    enum class Check : std::uint8_t {
      lowerCase,       // the name in lower case (ASCII) fits the pattern
      dated,           // the name fits, and a day stands in it: "2024-05-31", "20240531"
      beginsWithTime,  // the name fits, and begins with a day and an hour: "2024-05-31_12", "20240531T12"
      coreDump,        // the name fits, and isCoreDump() agrees
    };
    Where where;
    Check check;
    std::string_view name;      // pattern
    std::string_view category;  // raw value of a scan category
    std::string_view words;     // why it is of that, in English
  };
  [[nodiscard]] virtual std::span<const NamedFile> namedFiles() const noexcept { return {}; }
  [[nodiscard]] virtual std::span<const std::string_view> screenshotFolders() const noexcept { return {}; }
  // Whether the file is the memory of a process that crashed, by its name and first bytes. Looks at the disk.
  [[nodiscard]] virtual bool isCoreDump(const std::string& /*path*/) const { return false; }

  // A text of the interface that another one stands in for: keys of the string table.
  struct Wording {
    std::string_view key;
    std::string_view shownKey;
  };
  [[nodiscard]] virtual std::span<const Wording> wordings() const noexcept { return {}; }
  // The same for the English text of messages, by the phrase that another one stands in for.
  struct Phrase {
    std::string_view given;
    std::string_view shown;
  };
  [[nodiscard]] virtual std::span<const Phrase> phrases() const noexcept { return {}; }
  [[nodiscard]] std::string inOwnWords(std::string message) const {
    for (const auto& [given, shown] : phrases()) {
      if (const auto at = message.find(given); at != std::string::npos) message.replace(at, given.size(), shown);
    }
    return message;
  }
  // Whether one permission of the system opens every protected folder to a program.
  [[nodiscard]] virtual bool hasFullDiskPermission() const noexcept { return true; }
  // Names the sandbox that this program runs in; empty where it runs in none.
  [[nodiscard]] virtual std::string_view sandbox() const { return {}; }

  // A rule that is offered beside the built-in ones and becomes the user's own once it is added.
  struct SuggestedRule {
    std::string_view name;     // as commands take it
    std::string_view textKey;  // of its name for people; with ".note" that of its description
    std::string_view trigger;  // the JSON form of a rule's trigger
    std::string_view action;   // that of its action
  };
  [[nodiscard]] virtual std::span<const SuggestedRule> suggestedRules() const noexcept { return {}; }

  // A folder that a tool makes from a project, told by its name and by a file beside it or in it.
  struct BuildFolder {
    std::string_view name;         // pattern
    std::string_view beside = {};  // pattern of the project's file; empty where the name is enough
    std::string_view inside = {};  // name of a file in the folder
    std::string_view mentions =
        {};  // texts of which the file beside holds one, separated by commas; a file inside begins so
  };
  [[nodiscard]] virtual std::span<const BuildFolder> buildFolders() const noexcept { return {}; }

  [[nodiscard]] static const SystemProfile& none() noexcept {
    static const SystemProfile profile;
    return profile;
  }
};

}  // namespace orvane
