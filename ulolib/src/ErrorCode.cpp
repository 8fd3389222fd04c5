#include "ulolib/ErrorCode.h"

#include <boost/exception/get_error_info.hpp>
#include <exception>

namespace ulo {

namespace {

// Copies the location that ULO_AT (or BOOST_THROW_EXCEPTION) attached, if any.
void ReadLocation(const boost::exception& ex, std::string& function, std::string& file, int& line) {
    if (const char* const* f = boost::get_error_info<boost::throw_function>(ex)) {
        function = *f ? *f : "";
    }
    if (const char* const* f = boost::get_error_info<boost::throw_file>(ex)) {
        file = *f ? *f : "";
    }
    if (const int* l = boost::get_error_info<boost::throw_line>(ex)) {
        line = *l;
    }
}

}  // namespace

ErrorCode::ErrorCode(const boost::exception_ptr& ex) : exception_(ex) {
    if (!exception_) {
        return;
    }
    // The exception's type is only known to the exception itself: throw it to ask.
    try {
        boost::rethrow_exception(exception_);
    } catch (const exception::Exception& e) {
        resultCode_ = e.GetResultCode();
        message_ = e.GetMessage();
        ReadLocation(e, function_, file_, line_);
    } catch (const std::exception& e) {
        resultCode_ = exception::kResultFail;
        message_ = ULOString::FromUtf8(e.what());
        if (const auto* b = dynamic_cast<const boost::exception*>(&e)) {
            ReadLocation(*b, function_, file_, line_);
        }
    } catch (const boost::exception& e) {
        resultCode_ = exception::kResultFail;
        message_ = L"unknown error";
        ReadLocation(e, function_, file_, line_);
    } catch (...) {
        resultCode_ = exception::kResultFail;
        message_ = L"unknown error";
    }
}

void ErrorCode::Rethrow() const {
    if (exception_) {
        boost::rethrow_exception(exception_);
    }
}

}  // namespace ulo
