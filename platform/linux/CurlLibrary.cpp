#include "platform/linux/CurlLibrary.h"

#include "core/platform/HttpTransport.h"

#include <dlfcn.h>

namespace orvane {
namespace {

constexpr auto libraryName = "libcurl.so.4";

template <typename Function>
void find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
  if (function == nullptr) throw HttpError(HttpError::Failed{::dlerror()});
}

CurlLibrary loaded() {
  void* const library = ::dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw HttpError(HttpError::Failed{::dlerror()});
  CurlLibrary curl{};
  find(library, "curl_easy_init", curl.easyInit);
  find(library, "curl_easy_setopt", curl.easySetOption);
  find(library, "curl_easy_getinfo", curl.easyGetInfo);
  find(library, "curl_easy_strerror", curl.easyErrorText);
  find(library, "curl_easy_cleanup", curl.easyCleanUp);
  find(library, "curl_multi_init", curl.multiInit);
  find(library, "curl_multi_add_handle", curl.multiAddHandle);
  find(library, "curl_multi_remove_handle", curl.multiRemoveHandle);
  find(library, "curl_multi_perform", curl.multiPerform);
  find(library, "curl_multi_poll", curl.multiPoll);
  find(library, "curl_multi_wakeup", curl.multiWakeUp);
  find(library, "curl_multi_info_read", curl.multiReadInfo);
  find(library, "curl_multi_strerror", curl.multiErrorText);
  find(library, "curl_multi_cleanup", curl.multiCleanUp);
  find(library, "curl_url", curl.url);
  find(library, "curl_url_set", curl.urlSet);
  find(library, "curl_url_get", curl.urlGet);
  find(library, "curl_url_cleanup", curl.urlCleanUp);
  find(library, "curl_free", curl.free);
  find(library, "curl_slist_append", curl.listAppend);
  find(library, "curl_slist_free_all", curl.listFreeAll);
  decltype(&::curl_global_init) initialize = nullptr;
  find(library, "curl_global_init", initialize);
  const auto result = initialize(CURL_GLOBAL_DEFAULT);
  if (result != CURLE_OK) throw HttpError(HttpError::Failed{curl.easyErrorText(result)});
  return curl;
}

}  // namespace

const CurlLibrary& CurlLibrary::get() {
  static const CurlLibrary library = loaded();
  return library;
}

}  // namespace orvane
