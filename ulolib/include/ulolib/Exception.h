#pragma once
// Exception objects of the base library. They derive from boost::exception so that a throwing
// function, file and line can be attached and travel inside a boost::exception_ptr.
#include <boost/exception/exception.hpp>
#include <boost/exception/info.hpp>
#include <cstdint>
#include <exception>
#include <string>

#include "ulolib/Export.h"
#include "ulolib/String.h"

namespace ulo {
namespace exception {

// HRESULT-style result codes.
constexpr uint32_t kResultFail = 0x80004005u;        // E_FAIL
constexpr uint32_t kResultUnexpected = 0x8000FFFFu;  // E_UNEXPECTED

class ULOLIB_API Exception : public virtual std::exception, public virtual boost::exception {
public:
    ~Exception() override;
    virtual uint32_t GetResultCode() const { return kResultFail; }
    virtual ULOString GetMessage() const;
    const char* what() const noexcept override { return "ulo::exception::Exception"; }
};

// A failure the library detects itself, named by a short code such as "URB_INIPTH".
class ULOLIB_API InternalError : public Exception {
public:
    explicit InternalError(std::string code) : code_(std::move(code)) {}
    ~InternalError() override;
    const std::string& GetCode() const { return code_; }
    uint32_t GetResultCode() const override { return kResultUnexpected; }
    ULOString GetMessage() const override;
    const char* what() const noexcept override { return code_.c_str(); }

private:
    std::string code_;
};

// A failing platform call: the Windows error number and the call's name ("CreateFile", "fopen").
class ULOLIB_API SystemError : public Exception {
public:
    SystemError(long platformError, std::string call);
    ~SystemError() override;
    // Builds the error from a POSIX errno value, mapped to the matching Windows error number.
    static SystemError FromErrno(int err, std::string call);

    long GetPlatformError() const { return platformError_; }
    const std::string& GetCall() const { return call_; }
    uint32_t GetResultCode() const override;
    ULOString GetMessage() const override;
    const char* what() const noexcept override { return what_.c_str(); }

private:
    long platformError_;
    std::string call_;
    std::string what_;
};

// 0x80070000 | (e & 0xFFFF) for a positive e; zero and negative values are kept as they are.
ULOLIB_API uint32_t ResultFromPlatformError(long e);
// The Windows error number for an errno value (ENOENT -> 2, EACCES -> 5, ENOMEM -> 8, ...).
// Values without a counterpart map to ERROR_GEN_FAILURE (31).
ULOLIB_API long WindowsErrorFromErrno(int err);

}  // namespace exception
}  // namespace ulo

// Attaches a source location to an exception object: ULO_AT(ex, "signature", "ulogui/font", 42).
#define ULO_AT(ex, function, file, line) \
    ((ex) << ::boost::throw_function(function) << ::boost::throw_file(file) << ::boost::throw_line(line))
