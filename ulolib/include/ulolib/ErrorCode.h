#pragma once
// ulo::ErrorCode: the result of a file operation, either no error or an error that carries the
// exception object describing it, with its message, result code and source location.
#include <boost/exception_ptr.hpp>
#include <cstdint>
#include <string>
#include <type_traits>

#include "ulolib/Exception.h"
#include "ulolib/Export.h"
#include "ulolib/String.h"

namespace ulo {

class ULOLIB_API ErrorCode {
public:
    ErrorCode() = default;  // no error
    static ErrorCode noError() { return ErrorCode(); }

    // From an exception object (with whatever location was attached to it).
    template <class E, class = std::enable_if_t<std::is_base_of<std::exception, E>::value>>
    explicit ErrorCode(const E& ex) : ErrorCode(boost::copy_exception(ex)) {}
    explicit ErrorCode(const boost::exception_ptr& ex);

    bool IsError() const { return static_cast<bool>(exception_); }
    bool IsOk() const { return !IsError(); }

    uint32_t GetResultCode() const { return resultCode_; }  // 0 when there is no error
    const ULOString& GetMessage() const { return message_; }
    const std::string& GetFunction() const { return function_; }
    const std::string& GetFile() const { return file_; }
    int GetLine() const { return line_; }
    const boost::exception_ptr& GetException() const { return exception_; }
    // Throws the held exception; does nothing when there is no error.
    void Rethrow() const;

private:
    boost::exception_ptr exception_;
    uint32_t resultCode_ = 0;
    ULOString message_;
    std::string function_;
    std::string file_;
    int line_ = 0;
};

}  // namespace ulo
