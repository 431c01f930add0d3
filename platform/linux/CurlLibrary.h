#pragma once

#include <curl/curl.h>

namespace orvane {

// libcurl, which brings some thirty libraries: they are loaded when the first address is read, since the program
// starts several times as fast without them.
struct CurlLibrary {
  decltype(&::curl_easy_init) easyInit;
  decltype(&::curl_easy_setopt) easySetOption;
  decltype(&::curl_easy_getinfo) easyGetInfo;
  decltype(&::curl_easy_strerror) easyErrorText;
  decltype(&::curl_easy_cleanup) easyCleanUp;
  decltype(&::curl_multi_init) multiInit;
  decltype(&::curl_multi_add_handle) multiAddHandle;
  decltype(&::curl_multi_remove_handle) multiRemoveHandle;
  decltype(&::curl_multi_perform) multiPerform;
  decltype(&::curl_multi_poll) multiPoll;
  decltype(&::curl_multi_wakeup) multiWakeUp;
  decltype(&::curl_multi_info_read) multiReadInfo;
  decltype(&::curl_multi_strerror) multiErrorText;
  decltype(&::curl_multi_cleanup) multiCleanUp;
  decltype(&::curl_url) url;
  decltype(&::curl_url_set) urlSet;
  decltype(&::curl_url_get) urlGet;
  decltype(&::curl_url_cleanup) urlCleanUp;
  decltype(&::curl_free) free;
  decltype(&::curl_slist_append) listAppend;
  decltype(&::curl_slist_free_all) listFreeAll;

  // The library, loaded and initialised. Throws HttpError::Failed when it cannot be.
  static const CurlLibrary& get();
};

}  // namespace orvane
