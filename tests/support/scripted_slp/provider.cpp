#include "support/scripted_slp/provider.h"

#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <new>
#include <set>
#include <unordered_map>
#include <utility>

namespace scripted_slp {

namespace {

struct OpenedHandle {
  int number = 0;
  bool open = true;
  bool busy = false;
};

using Decision = std::function<std::optional<Reply>(const std::string&)>;

struct Books {
  std::map<Function, std::deque<Reply>> queued;
  std::map<Function, Reply> always;
  std::map<Function, Decision> decisions;
  std::vector<std::string> calls;
  unsigned int log = 0;
  std::vector<SLPBoolean> answers;
  /// All that were ever opened: a closed one is still told from a foreign one.
  std::unordered_map<SLPHandle, std::unique_ptr<OpenedHandle>> handles;
  int open_handles = 0;
  std::set<void*> memory;
  std::map<std::string, std::string> file_properties = BuiltInProperties();
  std::map<std::string, std::string> process_properties;
  std::vector<std::string> violations;
};

thread_local bool doing_own_work = false;

struct Provider {
  std::mutex mutex;
  Books books;
  /// Texts that SLPGetProperty returned; never forgotten, since a caller may still read them.
  std::set<std::string> kept_texts;
};

Provider& TheProvider() {
  static Provider& provider = *new Provider;
  return provider;
}

/// The books, for as long as the mutex is held.
class LockedBooks {
 public:
  Books* operator->() { return &TheProvider().books; }

 private:
  std::lock_guard<std::mutex> guard_{TheProvider().mutex};
};

OpenedHandle* Find(LockedBooks& books, SLPHandle handle) {
  const auto found = books->handles.find(handle);
  return found == books->handles.end() ? nullptr : found->second.get();
}

std::string NameOf(const OpenedHandle* handle) {
  return handle == nullptr ? "#?" : "#" + std::to_string(handle->number);
}

std::string CallText(const std::string& name, const std::vector<std::string>& arguments) {
  std::string text = name + "(";
  for (const std::string& argument : arguments) {
    text += (&argument == &arguments.front() ? "" : ",") + argument;
  }
  return text + ")";
}

/// Memory that only SLPFree releases.
void* HandOut(std::size_t size) {
  void* const memory = std::malloc(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  LockedBooks books;
  books->memory.insert(memory);
  return memory;
}

}  // namespace

WorkMark::WorkMark(bool own) : former_(std::exchange(doing_own_work, own)) {}

WorkMark::~WorkMark() {
  doing_own_work = former_;
}

bool DoingOwnWork() {
  return doing_own_work;
}

Call::Call(Function function, const std::string& name, const std::vector<std::string>& arguments) {
  Begin(function, CallText(name, arguments));
}

Call::Call(Function function, const std::string& name, SLPHandle handle, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), HandleName(handle));
  const std::string text = CallText(name, arguments);
  {
    LockedBooks books;
    OpenedHandle* const opened = Find(books, handle);
    if (opened == nullptr || !opened->open) {
      books->violations.push_back(text + ": the handle isn't open");
      handle_error_ = SLP_PARAMETER_BAD;
    } else if (opened->busy) {
      books->violations.push_back(text + ": the handle is in use");
      handle_error_ = SLP_HANDLE_IN_USE;
    } else {
      opened->busy = true;
      handle_ = handle;
    }
  }
  try {
    Begin(function, text);
  } catch (...) {
    LockedBooks books;
    if (OpenedHandle* const opened = Find(books, handle_)) {
      opened->busy = false;
    }
    throw;
  }
}

Call::~Call() {
  LockedBooks books;
  if (OpenedHandle* const opened = Find(books, handle_)) {
    opened->busy = false;
  }
}

void Call::Begin(Function function, std::string text) {
  Decision decision;
  {
    LockedBooks books;
    line_ = books->calls.size();
    log_ = books->log;
    books->calls.push_back(text);
    std::deque<Reply>& queued = books->queued[function];
    const auto decided = books->decisions.find(function);
    const auto always = books->always.find(function);
    if (!queued.empty()) {
      script_ = std::move(queued.front());
      queued.pop_front();
    } else if (decided != books->decisions.end()) {
      decision = decided->second;
    } else if (always != books->always.end()) {
      script_ = always->second;
    }
  }
  if (decision) {
    script_ = decision(text);
  }
  if (!script_.has_value()) {
    return;
  }
  if (script_->run) {
    script_->run();
  }
  if (script_->exception != nullptr) {
    std::rethrow_exception(script_->exception);
  }
  if (script_->carry_on) {
    script_.reset();
  }
}

void Call::LogResult(const std::string& result) {
  LockedBooks books;
  if (log_ == books->log && line_ < books->calls.size()) {
    books->calls[line_] += "=" + result;
  }
}

std::string LogText(const char* text) {
  return text == nullptr ? "null" : text;
}

SLPHandle OpenHandle() {
  LockedBooks books;
  auto opened = std::make_unique<OpenedHandle>();
  opened->number = static_cast<int>(books->handles.size()) + 1;
  SLPHandle const handle = opened.get();
  books->handles.emplace(handle, std::move(opened));
  ++books->open_handles;
  return handle;
}

void CloseHandle(SLPHandle handle) {
  LockedBooks books;
  if (OpenedHandle* const opened = Find(books, handle)) {
    opened->open = false;
    --books->open_handles;
  }
  if (books->open_handles == 0) {
    books->process_properties.clear();
  }
}

std::string HandleName(SLPHandle handle) {
  LockedBooks books;
  return NameOf(Find(books, handle));
}

char* HandOutText(const std::string& text) {
  auto* const memory = static_cast<char*>(HandOut(text.size() + 1));
  std::memcpy(memory, text.c_str(), text.size() + 1);
  return memory;
}

SLPSrvURL* HandOutURL(const ParsedURL& url) {
  const std::string texts[] = {url.type, url.host, url.family, url.part};
  std::size_t size = sizeof(SLPSrvURL);
  for (const std::string& text : texts) {
    size += text.size() + 1;
  }
  auto* const memory = static_cast<char*>(HandOut(size));
  char* places[4] = {};
  char* end = memory + sizeof(SLPSrvURL);
  for (std::size_t i = 0; i < 4; ++i) {
    places[i] = end;
    std::memcpy(end, texts[i].c_str(), texts[i].size() + 1);
    end += texts[i].size() + 1;
  }
  return new (memory) SLPSrvURL{places[0], places[1], url.port, places[2], places[3]};
}

void TakeBack(void* memory) {
  {
    LockedBooks books;
    if (books->memory.erase(memory) == 0) {
      books->violations.emplace_back("SLPFree of memory that wasn't handed out");
      return;
    }
  }
  std::free(memory);
}

void LogAnswer(SLPBoolean answer) {
  LockedBooks books;
  books->answers.push_back(answer);
}

const char* Keep(const std::optional<std::string>& text) {
  if (!text.has_value()) {
    return nullptr;
  }
  const std::lock_guard guard(TheProvider().mutex);
  return TheProvider().kept_texts.insert(*text).first->c_str();
}

void SetProcessProperty(const std::string& key, const std::string& value) {
  LockedBooks books;
  if (value.empty()) {
    books->process_properties.erase(key);
  } else {
    books->process_properties[key] = value;
  }
}

Reply Returns(SLPError result) {
  Reply reply;
  reply.result = result;
  return reply;
}

Reply HandsOutNothing() {
  return {};
}

Reply HandsOut(std::string text) {
  Reply reply;
  reply.text = std::move(text);
  return reply;
}

Reply Delivers(std::vector<Delivery> deliveries, SLPError result) {
  Reply reply;
  reply.deliveries = std::move(deliveries);
  reply.result = result;
  return reply;
}

Reply Runs(std::function<void()> run) {
  Reply reply;
  reply.run = std::move(run);
  reply.carry_on = true;
  return reply;
}

Delivery Service(std::string url, unsigned short lifetime) {
  return {SLP_OK, std::move(url), lifetime};
}

Delivery Attributes(std::string list) {
  return {SLP_OK, std::move(list), 0};
}

Delivery Code(SLPError code) {
  return {code, std::nullopt, 0};
}

void Reset() {
  LockedBooks books;
  const unsigned int log = books->log + 1;
  *books.operator->() = Books();
  books->log = log;
}

void Next(Function function, Reply reply) {
  LockedBooks books;
  books->queued[function].push_back(std::move(reply));
}

void Always(Function function, Reply reply) {
  LockedBooks books;
  books->always[function] = std::move(reply);
}

void Decide(Function function, Decision decide) {
  LockedBooks books;
  books->decisions[function] = std::move(decide);
}

void SetFileProperty(const std::string& key, const std::string& value) {
  LockedBooks books;
  books->file_properties[key] = value;
}

void RemoveProperty(const std::string& key) {
  LockedBooks books;
  books->file_properties.erase(key);
  books->process_properties.erase(key);
}

std::optional<std::string> Property(const std::string& key) {
  LockedBooks books;
  for (const auto* properties : {&books->process_properties, &books->file_properties}) {
    const auto found = properties->find(key);
    if (found != properties->end()) {
      return found->second;
    }
  }
  return std::nullopt;
}

std::vector<std::string> Calls() {
  LockedBooks books;
  return books->calls;
}

std::vector<std::string> Calls(const std::string& prefix) {
  std::vector<std::string> calls = Calls();
  std::erase_if(calls, [&](const std::string& call) { return !call.starts_with(prefix); });
  return calls;
}

std::vector<std::string> CallsButProperties() {
  std::vector<std::string> calls = Calls();
  std::erase_if(calls, [](const std::string& call) {
    return call.starts_with("SLPGetProperty(") || call.starts_with("SLPSetProperty(");
  });
  return calls;
}

void ForgetCalls() {
  LockedBooks books;
  books->calls.clear();
  ++books->log;
}

std::vector<SLPBoolean> CallbackAnswers() {
  LockedBooks books;
  return books->answers;
}

int OpenHandles() {
  LockedBooks books;
  return books->open_handles;
}

int OutstandingMemory() {
  LockedBooks books;
  return static_cast<int>(books->memory.size());
}

std::vector<std::string> Violations() {
  LockedBooks books;
  return books->violations;
}

}  // namespace scripted_slp
