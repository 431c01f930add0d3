#pragma once

#include "core/base/values/Uuid.h"
#include "core/safety/records/JournalEntry.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace orvane {

// Takes what JournalParser reads, in the order of the text.
class JournalVisitor {
 public:
  virtual ~JournalVisitor() = default;
  virtual void takeRun(const CleanupRunSummary& run) = 0;
  // An entry of the list that stands under `runId`, which the entry itself should name too.
  virtual void takeEntry(const Uuid& runId, JournalEntry entry) = 0;
};

// Reads the text of a journal piece by piece, so that a file of a million entries takes no more memory than what it
// says. Only runs and entries are read as values; everything else in the text is checked to be JSON. A list that stands
// twice counts twice: nothing that was recorded is lost.
class JournalParser {
 public:
  // Puts at most `most` bytes to `place` and returns their number; zero at the end of the text.
  using Source = std::function<std::size_t(char* place, std::size_t room)>;

  explicit JournalParser(Source source);
  ~JournalParser();
  JournalParser(const JournalParser&) = delete;
  JournalParser& operator=(const JournalParser&) = delete;

  // Throws JsonError when the text is no journal, whose beginning the visitor has taken then, and what `source` throws.
  void parse(JournalVisitor& visitor);

 private:
  class Elements;

  void parseRoot(JournalVisitor& visitor);
  void parseRuns(JournalVisitor& visitor);
  void parseEntries(JournalVisitor& visitor);
  // Calls back for each object of the list that begins here.
  template <typename TakeObject>
  void forEachObject(TakeObject takeObject);
  // Calls back for each member of the object that begins here, standing at its value.
  template <typename TakeMember>
  void forEachMember(TakeMember takeMember);
  void checkValue();

  char peek();
  char next();
  void expect(char wanted, const char* context);
  std::string key();
  void skipValue();
  void skipString();
  bool fill();

  Source m_source;
  std::unique_ptr<Elements> m_elements;
  std::string m_buffer;
  // The text from m_kept on stays in the buffer; the next character is at m_position.
  std::size_t m_kept = 1;
  std::size_t m_position = 1;
  std::size_t m_end = 1;
  int m_depth = 0;
};

}  // namespace orvane
