#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvane {

// The part of a fault report that describes the system. Nothing in it is personal: no names of users, machines or
// files.
struct SystemReport {
  enum class State : std::uint8_t { running, startable, absent };
  struct Service {
    std::string name;  // for people: "key ring"
    State state = State::absent;
  };
  std::string system;          // "Debian GNU/Linux 12 (bookworm)"
  std::string kernel;          // with the machine's kind
  std::string desktop;         // empty without one
  std::string homeFileSystem;  // kind of the one that holds the home folder
  std::string trashFolder;     // of the home folder's volume
  bool hasMessageBus = false;
  std::vector<Service> services;
};

}  // namespace orvane
