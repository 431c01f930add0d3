#pragma once

#include "core/base/files/FileUrl.h"

#include <QImage>
#include <QSize>

#include <chrono>
#include <span>
#include <string>
#include <string_view>

namespace orvane {

// Whether the name is one of a document whose first page can be drawn.
[[nodiscard]] bool isPageName(const FileUrl& file);

// Has the first page of a document drawn by a process of its own. A page is a program of a kind and may come from
// anywhere: that process gets the open file and nothing else, bounded memory and a few seconds. For worker threads.
struct PageReader {
  std::string program;  // the path of this program
  std::chrono::milliseconds maxTime{4000};

  // Upright on white, at most `size`; null where there is no page to draw.
  [[nodiscard]] QImage read(const FileUrl& file, QSize size) const;
};

// Whether the program was started to draw a page: by this argument, first.
inline constexpr std::string_view drawPageArgument = "--draw-page";
[[nodiscard]] bool asksForPage(std::span<const char* const> arguments);

// That process: draws the first page of the document at its standard input, not wider nor higher than the two numbers
// that follow the argument, and writes it to its standard output. Needs no display. Returns the status to exit with.
[[nodiscard]] int drawPage(int argc, char** argv);

}  // namespace orvane
