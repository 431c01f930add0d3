#pragma once

#include <sdbus-c++/sdbus-c++.h>

#include <memory>

namespace orvane {

// The differences between the two versions of the library in use: the second names services and objects by types of
// their own, and has no registration to finish.

[[nodiscard]] inline std::unique_ptr<sdbus::IProxy> makeBusProxy(sdbus::IConnection& connection, const char* service,
                                                                 const char* object) {
#if __has_include(<sdbus-c++/VTableItems.h>)
  return sdbus::createProxy(connection, sdbus::ServiceName(service), sdbus::ObjectPath(object));
#else
  return sdbus::createProxy(connection, service, object);
#endif
}

template <typename Proxy>
void finishSignals(Proxy& proxy) {
  if constexpr (requires { proxy.finishRegistration(); }) proxy.finishRegistration();
}

}  // namespace orvane
