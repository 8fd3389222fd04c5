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
    const ErrorCode ok = ErrorCode::noError();
    EXPECT_FALSE(ok.IsError());
    EXPECT_TRUE(ok.IsOk());
    EXPECT_EQ(ok.GetResultCode(), 0u);
    EXPECT_TRUE(ok.GetMessage().empty());
    EXPECT_NO_THROW(ok.Rethrow());
    EXPECT_FALSE(ErrorCode(boost::exception_ptr()).IsError());
}

TEST(ErrorCodeTest, InternalErrorKeepsItsCodeAndLocation) {
    const ErrorCode e(ULO_AT(InternalError("URB_INIPTH"),
                             "ulo::ErrorCode BitmapResourceFile::Init(const ULOPath&)", "ulogui/picture",
                             185));
    EXPECT_TRUE(e.IsError());
    EXPECT_EQ(e.GetMessage(), L"URB_INIPTH");
    EXPECT_EQ(e.GetResultCode(), ulo::exception::kResultUnexpected);
    EXPECT_EQ(e.GetFunction(), "ulo::ErrorCode BitmapResourceFile::Init(const ULOPath&)");
    EXPECT_EQ(e.GetFile(), "ulogui/picture");
    EXPECT_EQ(e.GetLine(), 185);
    // The exception object itself survives, with its type.
    try {
        e.Rethrow();
        ADD_FAILURE() << "nothing thrown";
    } catch (const InternalError& ex) {
        EXPECT_EQ(ex.GetCode(), "URB_INIPTH");
    }
}

TEST(ErrorCodeTest, AnyExceptionBecomesAnError) {
    const ErrorCode fromStd(std::runtime_error("disk on fire"));
    EXPECT_EQ(fromStd.GetResultCode(), ulo::exception::kResultFail);
    EXPECT_EQ(fromStd.GetMessage(), L"disk on fire");
    EXPECT_EQ(fromStd.GetLine(), 0);

    // Caught in flight, with a location from BOOST_THROW_EXCEPTION.
    boost::exception_ptr caught;
    try {
        BOOST_THROW_EXCEPTION(std::logic_error("broken"));
    } catch (...) {
        caught = boost::current_exception();
    }
    const ErrorCode fromThrow(caught);
    EXPECT_EQ(fromThrow.GetMessage(), L"broken");
    EXPECT_EQ(fromThrow.GetFile(), __FILE__);
    EXPECT_GT(fromThrow.GetLine(), 0);

    try {
        throw 42;
    } catch (...) {
        caught = boost::current_exception();
    }
    const ErrorCode unknown(caught);
    EXPECT_TRUE(unknown.IsError());
    EXPECT_EQ(unknown.GetResultCode(), ulo::exception::kResultFail);
    EXPECT_EQ(unknown.GetMessage(), L"unknown error");
}

TEST(ErrorCodeTest, SystemErrorCarriesTheWindowsCodeAndTheCall) {
    const SystemError accessDenied(5, "CreateFile");
    EXPECT_EQ(accessDenied.GetResultCode(), 0x80070005u);
    EXPECT_EQ(accessDenied.GetCall(), "CreateFile");
    const ErrorCode e(accessDenied);
    EXPECT_EQ(e.GetResultCode(), 0x80070005u);
    EXPECT_EQ(e.GetMessage().find(L"CreateFile failed"), 0u);

    const SystemError fromErrno = SystemError::FromErrno(ENOENT, "fopen");
    EXPECT_EQ(fromErrno.GetPlatformError(), 2);
    EXPECT_EQ(fromErrno.GetResultCode(), 0x80070002u);
    EXPECT_STREQ(fromErrno.what(), "fopen failed: No such file or directory (error 2)");

    EXPECT_EQ(ulo::exception::ResultFromPlatformError(0x12345), 0x80072345u);
    EXPECT_EQ(ulo::exception::ResultFromPlatformError(0), 0u);
    EXPECT_EQ(ulo::exception::ResultFromPlatformError(-2147024891L), 0x80070005u);  // already a result
}

TEST(ErrorCodeTest, ErrnoMapsToTheWindowsErrorNumbers) {
    struct Pair {
        int err;
        long windows;
    };
    const Pair table[] = {{ENOENT, 2},      {ENOTDIR, 3}, {EMFILE, 4},         {EACCES, 5},  {EPERM, 5},
                          {EISDIR, 5},      {EBADF, 6},   {ENOMEM, 8},         {EXDEV, 17},  {EROFS, 19},
                          {EAGAIN, 33},     {EEXIST, 80}, {EINVAL, 87},        {EPIPE, 109}, {ENOSPC, 112},
                          {ENOTEMPTY, 145}, {EBUSY, 170}, {ENAMETOOLONG, 206}, {EIO, 1117},  {0, 0},
                          {EHOSTDOWN, 31},  {-7, 31},     {100000, 31}};
    for (const Pair& p : table) {
        EXPECT_EQ(ulo::exception::WindowsErrorFromErrno(p.err), p.windows) << "errno " << p.err;
    }
    EXPECT_EQ(SystemError::FromErrno(EACCES, "open").GetResultCode(), 0x80070005u);
}

}  // namespace
