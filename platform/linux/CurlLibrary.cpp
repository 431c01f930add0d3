#include "platform/linux/CurlLibrary.h"

#include "core/base/values/LoadedLibrary.h"
#include "core/platform/HttpTransport.h"

#include <stdexcept>

namespace orvane {
namespace {

constexpr auto libraryName = "libcurl.so.4";

// Throws std::runtime_error where the library or a function is missing.
CurlLibrary loadedCurlLibrary() {
  const LoadedLibrary library(libraryName);
  CurlLibrary curl{};
  library.find("curl_easy_init", curl.easyInit);
  library.find("curl_easy_setopt", curl.easySetOption);
  library.find("curl_easy_getinfo", curl.easyGetInfo);
  library.find("curl_easy_strerror", curl.easyErrorText);
  library.find("curl_easy_cleanup", curl.easyCleanUp);
  library.find("curl_multi_init", curl.multiInit);
  library.find("curl_multi_add_handle", curl.multiAddHandle);
  library.find("curl_multi_remove_handle", curl.multiRemoveHandle);
  library.find("curl_multi_perform", curl.multiPerform);
  library.find("curl_multi_poll", curl.multiPoll);
  library.find("curl_multi_wakeup", curl.multiWakeUp);
  library.find("curl_multi_info_read", curl.multiReadInfo);
  library.find("curl_multi_strerror", curl.multiErrorText);
  library.find("curl_multi_cleanup", curl.multiCleanUp);
  library.find("curl_url", curl.url);
  library.find("curl_url_set", curl.urlSet);
  library.find("curl_url_get", curl.urlGet);
  library.find("curl_url_cleanup", curl.urlCleanUp);
  library.find("curl_free", curl.free);
  library.find("curl_slist_append", curl.listAppend);
  library.find("curl_slist_free_all", curl.listFreeAll);
  decltype(&::curl_global_init) initialize = nullptr;
  library.find("curl_global_init", initialize);
  const auto result = initialize(CURL_GLOBAL_DEFAULT);
  if (result != CURLE_OK) throw HttpError(HttpError::Failed{curl.easyErrorText(result)});
  return curl;
}

}  // namespace

const CurlLibrary& CurlLibrary::get() try {
  static const CurlLibrary library = loadedCurlLibrary();
  return library;
} catch (const std::runtime_error& error) {
  throw HttpError(HttpError::Failed{error.what()});
}

}  // namespace orvane
