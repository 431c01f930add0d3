#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace orvane {

// Files of a sample home. "#" in a place stands for the file's number, counted from 1.
struct SampleFiles {
  std::string_view place;  // below the home folder
  int count;
  std::int64_t bytes;               // of the first; each further one is a little larger
  int age;                          // days since the first was written; each further one is a day older
  std::string_view contentOf = {};  // the file whose copy this is
};

constexpr std::int64_t kilobyte = 1000;
constexpr std::int64_t megabyte = 1000 * kilobyte;

// One a line, which a formatter would set in columns.
// clang-format off
constexpr std::array sampleFiles{
    // Files that stay. First, as the older of two copies is the one that was made first.
    SampleFiles{"Documents/contract.pdf", 1, 2400 * kilobyte, 220},
    SampleFiles{"Documents/Letters/letter-#.odt", 12, 31 * kilobyte, 90},
    SampleFiles{"Documents/Reports/2025/report-#.pdf", 10, 1300 * kilobyte, 330},
    SampleFiles{"Documents/Reports/2026/report-#.pdf", 9, 1200 * kilobyte, 40},
    SampleFiles{"Documents/Taxes/2025/receipt-#.pdf", 14, 210 * kilobyte, 310},
    SampleFiles{"Music/Album/track-0#.flac", 9, 28 * megabyte, 800},
    SampleFiles{"Pictures/2024/Lisbon/IMG_20#.jpg", 40, 3 * megabyte, 620},
    SampleFiles{"Pictures/2026/Garden/IMG_30#.jpg", 30, 3200 * kilobyte, 140},
    SampleFiles{"Pictures/To print/IMG_201.jpg", 1, 3 * megabyte, 100, "Pictures/2024/Lisbon/IMG_201.jpg"},
    SampleFiles{"Projects/website/package.json", 1, 2 * kilobyte, 130},
    SampleFiles{"Projects/website/src/page-#.ts", 8, 9 * kilobyte, 130},
    SampleFiles{"Projects/website/node_modules/example-#/index.js", 36, 120 * kilobyte, 150},
    SampleFiles{"Projects/engine/Cargo.toml", 1, kilobyte, 95},
    SampleFiles{"Projects/engine/src/module_#.rs", 6, 14 * kilobyte, 95},
    SampleFiles{"Projects/engine/target/debug/deps/engine-#", 10, 24 * megabyte, 96},
    SampleFiles{"Videos/interview.mov", 1, 900 * megabyte, 280},
    SampleFiles{".bashrc", 1, 3 * kilobyte, 700},
    SampleFiles{".gnupg/pubring.kbx", 1, 8 * kilobyte, 700},
    // Files that programs make again.
    SampleFiles{".cache/chromium/Default/Cache/Cache_Data/data_#", 4, 61 * megabyte, 2},
    SampleFiles{".cache/chromium/Default/Code Cache/js/index_#", 12, 900 * kilobyte, 3},
    SampleFiles{".cache/mozilla/firefox/k3x9q2.default/cache2/entries/A0#", 24, 1400 * kilobyte, 4},
    SampleFiles{".cache/pip/http/wheel_#", 9, 17 * megabyte, 40},
    SampleFiles{".cache/thumbnails/large/#.png", 30, 41 * kilobyte, 6},
    SampleFiles{".cache/example-player/stream_#.bin", 6, 38 * megabyte, 9},
    SampleFiles{".npm/_cacache/content-v2/sha512/#", 20, 700 * kilobyte, 60},
    SampleFiles{".config/Code/CachedData/bundle_#", 6, 11 * megabyte, 15},
    SampleFiles{".config/Code/logs/20260901T091500/window_#.log", 3, 240 * kilobyte, 80},
    SampleFiles{".local/share/xorg/Xorg.0.log.old", 1, 46 * kilobyte, 12},
    SampleFiles{"Library/Caches/com.example.Player/stream_#.bin", 4, 30 * megabyte, 9},
    SampleFiles{"Library/Caches/Google/Chrome/Default/data_#", 4, 22 * megabyte, 3},
    // A folder for downloads that nobody has looked through for a year.
    SampleFiles{"Downloads/workbench_5.2_amd64.deb", 1, 84 * megabyte, 45},
    SampleFiles{"Downloads/studio-setup.dmg", 1, 212 * megabyte, 190},
    SampleFiles{"Downloads/debian-12.7.0-amd64-netinst.iso", 1, 663 * megabyte, 120},
    SampleFiles{"Downloads/holiday film.mov", 1, 1840 * megabyte, 300},
    SampleFiles{"Downloads/server.log", 1, 2400 * kilobyte, 100},
    SampleFiles{"Downloads/build-#.log", 5, 310 * kilobyte, 70},
    SampleFiles{"Downloads/invoice-2026-0#.pdf", 7, 180 * kilobyte, 30},
    SampleFiles{"Downloads/contract (1).pdf", 1, 2400 * kilobyte, 20, "Documents/contract.pdf"},
    SampleFiles{"Downloads/photos.zip", 1, 96 * megabyte, 210},
    SampleFiles{"Downloads/photos (1).zip", 1, 96 * megabyte, 209, "Downloads/photos.zip"},
    SampleFiles{"Downloads/lecture-#.mp4", 4, 140 * megabyte, 110},
    SampleFiles{"Downloads/song-#.mp3", 8, 6 * megabyte, 260},
    SampleFiles{"Downloads/table-#.csv", 5, 90 * kilobyte, 33},
    SampleFiles{"Downloads/unfinished.iso.part", 1, 220 * megabyte, 1},
    SampleFiles{"Desktop/Screenshot 2026-09-0# at 11.40.13.png", 6, 1700 * kilobyte, 75},
    SampleFiles{"Desktop/notes.txt", 1, 4 * kilobyte, 1},
};
// clang-format on

}  // namespace orvane
