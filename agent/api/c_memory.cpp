#include "api/c_memory.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace slp::client {
namespace {

void* Allocate(std::size_t size) {
  void* const memory = std::malloc(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

/// Copies `text` to `free_space` and moves that behind it.
char* Place(std::string_view text, char*& free_space) {
  char* const start = free_space;
  std::memcpy(start, text.data(), text.size());
  start[text.size()] = '\0';
  free_space = start + text.size() + 1;
  return start;
}

}  // namespace

char* NewText(std::string_view text) {
  char* free_space = static_cast<char*>(Allocate(text.size() + 1));
  return Place(text, free_space);
}

SLPSrvURL* NewUrl(const ServiceUrl& url) {
  void* const memory = Allocate(sizeof(SLPSrvURL) + url.type.size() + url.host.size() + url.family.size() +
                                url.part.size() + 4);
  char* free_space = static_cast<char*>(memory) + sizeof(SLPSrvURL);
  return new (memory) SLPSrvURL{.s_pcSrvType = Place(url.type, free_space),
                                .s_pcHost = Place(url.host, free_space),
                                .s_iPort = url.port,
                                .s_pcNetFamily = Place(url.family, free_space),
                                .s_pcSrvPart = Place(url.part, free_space)};
}

void ReleaseMemory(void* memory) {
  std::free(memory);
}

}  // namespace slp::client
