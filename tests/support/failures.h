/// \file
/// Expectations on what is thrown: which of the three kinds, in which words, from where.
#pragma once

#include "quentlog/exception.h"
#include "rcommon/rfaultexception.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <typeinfo>

namespace testsupport {

/// The three kinds of failure; each is caught as its own type alone.
enum class Kind { Rfault, Cpp, BareRuntimeError, Other, Nothing };

/// What a call threw.
struct Failure {
  Kind kind = Kind::Nothing;
  std::string what;
  std::string file;
  std::string function;
  long line = 0;
};

inline std::ostream& operator<<(std::ostream& out, const Failure& failure) {
  constexpr const char* kinds[] = {"RfaultException", "CPPException", "std::runtime_error",
                                   "another exception", "nothing"};
  return out << kinds[static_cast<int>(failure.kind)] << " \"" << failure.what << "\" from "
             << failure.function << " in " << failure.file << ":" << failure.line;
}

/// Runs `action` and tells what it threw.
template <class Action> Failure FailureOf(Action action) {
  try {
    action();
  } catch (const RfaultException& e) {
    return {Kind::Rfault, e.what(), e.get_File(), e.get_Function(), e.get_LineNum()};
  } catch (const QuentLog::CPPException<std::runtime_error>& e) {
    if (std::string(e.get_What()) != e.what())
      return {Kind::Other, "get_What and what differ", e.get_File(), e.get_Function(), e.get_LineNum()};
    return {Kind::Cpp, e.what(), e.get_File(), e.get_Function(), e.get_LineNum()};
  } catch (const std::runtime_error& e) {
    return {typeid(e) == typeid(std::runtime_error) ? Kind::BareRuntimeError : Kind::Other, e.what(), "", "",
            0};
  } catch (const std::exception& e) {
    return {Kind::Other, e.what(), "", "", 0};
  } catch (...) {
    return {Kind::Other, "not a std::exception", "", "", 0};
  }
  return {};
}

/// Expects a kind and the exact words.
template <class Action> void ExpectFailure(Kind kind, const std::string& message, Action action) {
  const Failure failure = FailureOf(action);
  EXPECT_EQ(failure.kind, kind) << failure;
  EXPECT_EQ(failure.what, message);
}

/// The same, with the source file's own name and the qualified function name, and some line.
template <class Action>
void ExpectFailureFrom(Kind kind, const std::string& message, const std::string& file,
                       const std::string& function, Action action) {
  const Failure failure = FailureOf(action);
  EXPECT_EQ(failure.kind, kind) << failure;
  EXPECT_EQ(failure.what, message);
  EXPECT_EQ(failure.file, file);
  EXPECT_EQ(failure.function, function);
  EXPECT_GT(failure.line, 0);
}

} // namespace testsupport
