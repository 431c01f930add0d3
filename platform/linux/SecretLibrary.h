#pragma once

#include <libsecret/secret.h>

namespace orvane {

// libsecret with what it needs of GLib: loaded when a key is first asked for, as most starts need none, and its nine
// libraries take more than a megabyte of each.
struct SecretLibrary {
  decltype(&::secret_attributes_build) buildAttributes;
  decltype(&::secret_collection_for_alias_sync) collectionForAlias;
  decltype(&::secret_collection_get_locked) isCollectionLocked;
  decltype(&::secret_item_delete_sync) deleteItem;
  decltype(&::secret_item_get_locked) isItemLocked;
  decltype(&::secret_item_get_secret) secretOfItem;
  decltype(&::secret_service_get_sync) service;
  decltype(&::secret_service_search_sync) search;
  decltype(&::secret_service_store_sync) store;
  decltype(&::secret_value_get) bytesOfValue;
  decltype(&::secret_value_new) newValue;
  decltype(&::secret_value_unref) releaseValue;
  decltype(&::g_bus_get_sync) bus;
  decltype(&::g_cancellable_cancel) cancel;
  decltype(&::g_cancellable_new) newCancellable;
  decltype(&::g_dbus_connection_set_exit_on_close) setExitOnClose;
  decltype(&::g_error_free) freeError;
  decltype(&::g_hash_table_unref) releaseTable;
  decltype(&::g_list_free) freeList;
  decltype(&::g_object_unref) releaseObject;

  // The library, loaded. Throws std::runtime_error when it cannot be.
  static const SecretLibrary& get();
};

}  // namespace orvane
