#include <gtest/gtest.h>

#include <boost/throw_exception.hpp>
#include <cerrno>
#include <stdexcept>

#include "ulolib/ErrorCode.h"

namespace {

using ulo::ErrorCode;
using ulo::exception::InternalError;
using ulo::exception::SystemError;

TEST(ErrorCodeTest, NoErrorCarriesNothing) {
    for (const ErrorCode& ok : {ErrorCode::noError(), ErrorCode(boost::exception_ptr())}) {
        EXPECT_FALSE(ok.IsError());
        EXPECT_EQ(ok.GetResultCode(), 0u);
        EXPECT_TRUE(ok.GetMessage().empty());
        EXPECT_NO_THROW(ok.Rethrow());
    }
}

TEST(ErrorCodeTest, InternalErrorKeepsItsCodeTypeAndLocation) {
    const ErrorCode e(ULO_AT(InternalError("URB_INIPTH"), "Init()", "ulogui/picture", 185));
    EXPECT_TRUE(e.IsError());
    EXPECT_EQ(e.GetMessage(), L"URB_INIPTH");
    EXPECT_EQ(e.GetResultCode(), ulo::exception::kResultUnexpected);
    EXPECT_EQ(e.GetFunction() + " " + e.GetFile() + " " + std::to_string(e.GetLine()),
              "Init() ulogui/picture 185");
    EXPECT_THROW(e.Rethrow(), InternalError);
}

TEST(ErrorCodeTest, AnyExceptionBecomesAnError) {
    const ErrorCode fromStd(std::runtime_error("disk on fire"));
    EXPECT_EQ(fromStd.GetResultCode(), ulo::exception::kResultFail);
    EXPECT_EQ(fromStd.GetMessage(), L"disk on fire");
    EXPECT_EQ(fromStd.GetLine(), 0);

    boost::exception_ptr thrown, unknown;
    try {
        BOOST_THROW_EXCEPTION(std::logic_error("broken"));  // with a location
    } catch (...) {
        thrown = boost::current_exception();
    }
    try {
        throw 42;
    } catch (...) {
        unknown = boost::current_exception();
    }
    EXPECT_EQ(ErrorCode(thrown).GetMessage(), L"broken");
    EXPECT_EQ(ErrorCode(thrown).GetFile(), __FILE__);
    EXPECT_GT(ErrorCode(thrown).GetLine(), 0);
    EXPECT_EQ(ErrorCode(unknown).GetResultCode(), ulo::exception::kResultFail);
    EXPECT_EQ(ErrorCode(unknown).GetMessage(), L"unknown error");
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
