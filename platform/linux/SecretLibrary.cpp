#include "platform/linux/SecretLibrary.h"

#include "core/base/values/LoadedLibrary.h"

namespace orvane {
namespace {

SecretLibrary loadedSecretLibrary() {
  const LoadedLibrary library("libsecret-1.so.0");
  SecretLibrary secret{};
  library.find("secret_attributes_build", secret.buildAttributes);
  library.find("secret_collection_for_alias_sync", secret.collectionForAlias);
  library.find("secret_collection_get_locked", secret.isCollectionLocked);
  library.find("secret_item_delete_sync", secret.deleteItem);
  library.find("secret_item_get_locked", secret.isItemLocked);
  library.find("secret_item_get_secret", secret.secretOfItem);
  library.find("secret_service_get_sync", secret.service);
  library.find("secret_service_search_sync", secret.search);
  library.find("secret_service_store_sync", secret.store);
  library.find("secret_value_get", secret.bytesOfValue);
  library.find("secret_value_new", secret.newValue);
  library.find("secret_value_unref", secret.releaseValue);
  library.find("g_bus_get_sync", secret.bus);
  library.find("g_cancellable_cancel", secret.cancel);
  library.find("g_cancellable_new", secret.newCancellable);
  library.find("g_dbus_connection_set_exit_on_close", secret.setExitOnClose);
  library.find("g_error_free", secret.freeError);
  library.find("g_hash_table_unref", secret.releaseTable);
  library.find("g_list_free", secret.freeList);
  library.find("g_object_unref", secret.releaseObject);
  return secret;
}

}  // namespace

const SecretLibrary& SecretLibrary::get() {
  static const SecretLibrary library = loadedSecretLibrary();
  return library;
}

}  // namespace orvane
