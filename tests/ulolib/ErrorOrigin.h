#pragma once
// Where an error came from: the code of an internal error or the call name of a system error.
#include <string>

#include "ulolib/ErrorCode.h"
#include "ulolib/Exception.h"

inline std::string ErrorOrigin(const ulo::ErrorCode& error) {
    try {
        error.Rethrow();
    } catch (const ulo::exception::InternalError& e) {
        return e.GetCode();
    } catch (const ulo::exception::SystemError& e) {
        return e.GetCall();
    } catch (...) {
        return "another exception";
    }
    return "no error";
}
