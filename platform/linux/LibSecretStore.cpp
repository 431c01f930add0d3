#include "platform/linux/LibSecretStore.h"

#include "platform/linux/SecretLibrary.h"
#include "platform/posix/TimeLimit.h"

#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace orvane {
namespace {

const SecretLibrary& secretLibrary() {
  return SecretLibrary::get();
}

struct Unreference {
  void operator()(gpointer object) const noexcept { secretLibrary().releaseObject(object); }
};
template <typename T>
using Object = std::unique_ptr<T, Unreference>;

struct FreeValue {
  void operator()(SecretValue* value) const noexcept { secretLibrary().releaseValue(value); }
};
using Value = std::unique_ptr<SecretValue, FreeValue>;

struct FreeTable {
  void operator()(GHashTable* table) const noexcept { secretLibrary().releaseTable(table); }
};
using Attributes = std::unique_ptr<GHashTable, FreeTable>;

struct Place {
  std::string service;
  std::string account;
};

const SecretSchema& schema() {
  static const SecretSchema schema = [] {
    SecretSchema made{};
    made.name = "com.orvane.Key";
    made.flags = SECRET_SCHEMA_NONE;
    made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
    made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
    return made;
  }();
  return schema;
}

Attributes attributesOf(const Place& place) {
  return Attributes(secretLibrary().buildAttributes(&schema(), "service", place.service.c_str(), "account",
                                                    place.account.c_str(), nullptr));
}

// Null when there is no Secret Service, or none that talks.
Object<SecretService> openService(GCancellable* cancellable) {
  const Object<GDBusConnection> bus(secretLibrary().bus(G_BUS_TYPE_SESSION, cancellable, nullptr));
  if (!bus) return nullptr;
  // The end of the session must not end this process in the middle of a move.
  secretLibrary().setExitOnClose(bus.get(), FALSE);
  return Object<SecretService>(secretLibrary().service(SECRET_SERVICE_OPEN_SESSION, cancellable, nullptr));
}

// Absent when the service does not answer.
std::optional<std::vector<Object<SecretItem>>> itemsAt(SecretService* service, const Place& place,
                                                       SecretSearchFlags flags, GCancellable* cancellable) {
  GError* error = nullptr;
  GList* list = secretLibrary().search(service, &schema(), attributesOf(place).get(), flags, cancellable, &error);
  std::vector<Object<SecretItem>> items;
  for (const auto* node = list; node != nullptr; node = node->next) {
    items.emplace_back(static_cast<SecretItem*>(node->data));
  }
  secretLibrary().freeList(list);
  if (error == nullptr) return items;
  secretLibrary().freeError(error);
  return std::nullopt;
}

bool addNow(const Place& place, const SecretText& secret, GCancellable* cancellable) {
  const auto service = openService(cancellable);
  if (!service) return false;
  const Object<SecretCollection> collection(secretLibrary().collectionForAlias(
      service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancellable, nullptr));
  if (collection && secretLibrary().isCollectionLocked(collection.get()) != FALSE) return false;
  const Value value(
      secretLibrary().newValue(secret.view().data(), static_cast<gssize>(secret.view().size()), "text/plain"));
  const auto label = place.service + " " + place.account;
  return secretLibrary().store(service.get(), &schema(), attributesOf(place).get(), SECRET_COLLECTION_DEFAULT,
                               label.c_str(), value.get(), cancellable, nullptr) != FALSE;
}

bool removeNow(const Place& place, GCancellable* cancellable) {
  const auto service = openService(cancellable);
  if (!service) return false;
  const auto items = itemsAt(service.get(), place, SECRET_SEARCH_ALL, cancellable);
  if (!items) return false;
  bool areGone = true;
  for (const auto& item : *items) {
    const bool isGone = secretLibrary().isItemLocked(item.get()) == FALSE &&
                        secretLibrary().deleteItem(item.get(), cancellable, nullptr) != FALSE;
    areGone = areGone && isGone;
  }
  return areGone;
}

std::optional<SecretText> findNow(const Place& place, GCancellable* cancellable) {
  const auto service = openService(cancellable);
  if (!service) return std::nullopt;
  const auto items =
      itemsAt(service.get(), place, static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS),
              cancellable);
  if (!items) return std::nullopt;
  for (const auto& item : *items) {
    const Value value(secretLibrary().secretOfItem(item.get()));
    if (!value) continue;
    gsize length = 0;
    const auto* bytes = secretLibrary().bytesOfValue(value.get(), &length);
    return SecretText(std::string_view(bytes != nullptr ? bytes : "", length));
  }
  return std::nullopt;
}

// The work's result, or `otherwise` when it takes too long. The service can hold a call in places where it is not
// cancelled.
template <typename Result>
Result within(std::chrono::milliseconds timeout, Result otherwise, std::function<Result(GCancellable*)> work) {
  try {
    const std::shared_ptr<GCancellable> cancellable(secretLibrary().newCancellable(), Unreference{});
    const auto result =
        finishedWithin<Result>(timeout, [cancellable, work = std::move(work)] { return work(cancellable.get()); });
    if (result) return *result;
    secretLibrary().cancel(cancellable.get());
  } catch (const std::runtime_error&) {
    // The library is not there, or no thread could be started.
  }
  return otherwise;
}

}  // namespace

bool LibSecretStore::add(const std::string& service, const std::string& account, const SecretText& secret) {
  return within<bool>(m_timeout, false, [place = Place{service, account}, secret](GCancellable* cancellable) {
    return addNow(place, secret, cancellable);
  });
}

bool LibSecretStore::remove(const std::string& service, const std::string& account) {
  return within<bool>(m_timeout, false, [place = Place{service, account}](GCancellable* cancellable) {
    return removeNow(place, cancellable);
  });
}

std::optional<SecretText> LibSecretStore::find(const std::string& service, const std::string& account) {
  return within<std::optional<SecretText>>(
      m_timeout, std::nullopt,
      [place = Place{service, account}](GCancellable* cancellable) { return findNow(place, cancellable); });
}

}  // namespace orvane
