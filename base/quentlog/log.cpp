#include "quentlog/log.h"

#include "rcommon/rtext.h"

#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>

namespace QuentLog {

struct Log::Channel {
  std::shared_ptr<spdlog::logger> logger;
};

namespace {

spdlog::level::level_enum toSpdlog(LOGGING_LEVEL level) {
  switch (level) {
  case LEVEL_TRACE:
    return spdlog::level::trace;
  case LEVEL_DEBUG:
    return spdlog::level::debug;
  case LEVEL_INFO:
    return spdlog::level::info;
  case LEVEL_WARNING:
    return spdlog::level::warn;
  case LEVEL_ERROR:
    return spdlog::level::err;
  }
  return spdlog::level::critical;
}

std::optional<spdlog::level::level_enum> levelOfName(const std::string& name) {
  static const std::map<std::string, spdlog::level::level_enum> names = {
      {"trace", spdlog::level::trace},  {"debug", spdlog::level::debug}, {"info", spdlog::level::info},
      {"warning", spdlog::level::warn}, {"error", spdlog::level::err},   {"off", spdlog::level::off}};
  const auto found = names.find(name);
  return found == names.end() ? std::nullopt : std::optional(found->second);
}

/// What QUENTLOG_LEVEL asks for.
struct LevelSettings {
  spdlog::level::level_enum general = spdlog::level::warn;
  std::map<std::string, spdlog::level::level_enum> channels;
};

/// Reads "level" and "channel=level" entries between commas. An entry that is neither is named on
/// standard error and passed over: a typing error must not silence a log.
LevelSettings parseLevels(const std::string& text) {
  LevelSettings settings;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find(',', start), text.size());
    const std::string entry = text.substr(start, end - start);
    start = end + 1;
    const std::size_t equals = entry.find('=');
    const auto level = levelOfName(equals == std::string::npos ? entry : entry.substr(equals + 1));
    if (!level)
      std::fprintf(stderr,
                   "QUENTLOG_LEVEL: \"%s\" is passed over; use trace, debug, info, warning, error or "
                   "off, alone or as channel=level\n",
                   entry.c_str());
    else if (equals == std::string::npos)
      settings.general = *level;
    else
      settings.channels[entry.substr(0, equals)] = *level;
  }
  return settings;
}

std::shared_ptr<spdlog::logger> makeLogger(const std::string& name) {
  static const char* const variable = std::getenv("QUENTLOG_LEVEL");
  static const LevelSettings settings = parseLevels(variable ? variable : "");
  static const auto sink = std::make_shared<spdlog::sinks::stderr_sink_mt>();
  auto logger = std::make_shared<spdlog::logger>(name, sink);
  logger->set_pattern("%Y-%m-%d %H:%M:%S.%e [%n] %l: %v");
  logger->flush_on(spdlog::level::trace);
  const auto own = settings.channels.find(name);
  logger->set_level(own == settings.channels.end() ? settings.general : own->second);
  return logger;
}

} // namespace

Log::Log(const std::wstring& channel) {
  // Never destroyed: objects of static storage may log when they go.
  static std::mutex& lock = *new std::mutex;
  static auto& channels = *new std::map<std::string, std::shared_ptr<Channel>>;
  const std::string name = rtext::narrow(channel.c_str());
  const std::lock_guard guard(lock);
  std::shared_ptr<Channel>& entry = channels[name];
  if (!entry)
    entry = std::make_shared<Channel>(Channel{makeLogger(name)});
  m_Channel = entry;
}

Log::~Log() = default;

bool Log::IsEnabled(LOGGING_LEVEL level) const {
  return m_Channel->logger->should_log(toSpdlog(level));
}

void Log::LogTrace(const std::wstring& message) const {
  Write(LEVEL_TRACE, message);
}
void Log::LogInfo(const std::wstring& message) const {
  Write(LEVEL_INFO, message);
}
void Log::LogWarning(const std::wstring& message) const {
  Write(LEVEL_WARNING, message);
}
void Log::LogError(const std::wstring& message) const {
  Write(LEVEL_ERROR, message);
}

void Log::Write(LOGGING_LEVEL level, const std::wstring& message) const {
  if (IsEnabled(level))
    m_Channel->logger->log(toSpdlog(level), "{}", rtext::narrow(message.c_str()));
}

} // namespace QuentLog
