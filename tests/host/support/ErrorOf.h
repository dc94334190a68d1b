// What calls fail with.
#pragma once

#include <string>

#include "host/HostError.h"

/// The message of the error that a call throws; empty when it does not throw.
template <class Error = ravelin::HostError, class Call>
std::string ErrorOf(const Call& call) {
  try {
    call();
    return "";
  } catch (const Error& error) {
    return error.what();
  }
}
