#include <gtest/gtest.h>

#include <boost/throw_exception.hpp>
#include <cerrno>
#include <functional>
#include <stdexcept>

#include "ulolib/ErrorCode.h"

namespace {

using ulo::ErrorCode;
using ulo::exception::InternalError;
using ulo::exception::SystemError;

boost::exception_ptr Caught(const std::function<void()>& raise) {
    try {
        raise();
    } catch (...) {
        return boost::current_exception();
    }
    return {};
}

TEST(ErrorCodeTest, ErrorsCarryTheirResultMessageAndLocation) {
    const int line = __LINE__ + 1;
    const auto located = Caught([] { BOOST_THROW_EXCEPTION(std::logic_error("broken")); });
    const std::tuple<ErrorCode, uint32_t, std::wstring, std::string> cases[] = {
        {ErrorCode::noError(), 0, L"", ":0"},
        {ErrorCode(boost::exception_ptr()), 0, L"", ":0"},
        {ErrorCode(ULO_AT(InternalError("URB_INIPTH"), "Init()", "ulogui/picture", 185)),
         ulo::exception::kResultUnexpected, L"URB_INIPTH", "ulogui/picture:185"},
        {ErrorCode(std::runtime_error("disk on fire")), ulo::exception::kResultFail, L"disk on fire", ":0"},
        {ErrorCode(located), ulo::exception::kResultFail, L"broken", __FILE__ ":" + std::to_string(line)},
        {ErrorCode(Caught([] { throw 42; })), ulo::exception::kResultFail, L"unknown error", ":0"},
    };
    for (const auto& [error, result, message, where] : cases) {
        EXPECT_EQ(error.IsError(), result != 0) << where;
        EXPECT_EQ(std::make_tuple(error.GetResultCode(), error.GetMessage(),
                                  error.GetFile() + ":" + std::to_string(error.GetLine())),
                  std::make_tuple(result, ULOString(message), where));
    }
    EXPECT_NO_THROW(ErrorCode::noError().Rethrow());
    EXPECT_EQ(std::get<0>(cases[2]).GetFunction(), "Init()");
    EXPECT_THROW(std::get<0>(cases[2]).Rethrow(), InternalError);
}

TEST(ErrorCodeTest, SystemErrorCarriesTheWindowsCodeAndTheCall) {
    const ErrorCode accessDenied(SystemError(5, "CreateFile"));
    EXPECT_EQ(accessDenied.GetResultCode(), 0x80070005u);
    EXPECT_EQ(accessDenied.GetMessage().find(L"CreateFile failed"), 0u);
    const SystemError fromErrno = SystemError::FromErrno(ENOENT, "fopen");
    EXPECT_EQ(fromErrno.GetResultCode(), 0x80070002u);
    EXPECT_STREQ(fromErrno.what(), "fopen failed: No such file or directory (error 2)");

    EXPECT_EQ(ulo::exception::ResultFromPlatformError(0x12345), 0x80072345u);
    EXPECT_EQ(ulo::exception::ResultFromPlatformError(0), 0u);
    EXPECT_EQ(ulo::exception::ResultFromPlatformError(-2147024891L), 0x80070005u);  // already a result
    const std::pair<int, long> errnoToWindows[] = {
        {ENOENT, 2},  {ENOTDIR, 3}, {EMFILE, 4},   {EACCES, 5},      {EPERM, 5},   {EISDIR, 5},
        {EBADF, 6},   {ENOMEM, 8},  {EXDEV, 17},   {EROFS, 19},      {EAGAIN, 33}, {EEXIST, 80},
        {EINVAL, 87}, {EPIPE, 109}, {ENOSPC, 112}, {ENOTEMPTY, 145}, {EBUSY, 170}, {ENAMETOOLONG, 206},
        {EIO, 1117},  {0, 0},       {EDOM, 31},    {-7, 31},         {100000, 31}};
    for (const auto& p : errnoToWindows) {
        EXPECT_EQ(ulo::exception::WindowsErrorFromErrno(p.first), p.second) << "errno " << p.first;
    }
}

}  // namespace
