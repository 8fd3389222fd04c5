#pragma once
// The extensions of the six resource files, without their dot, in the order discovery walks them;
// the position of an extension is the value of its ResourceFile::resourceType_e.
namespace ulogui {
namespace l10n {

constexpr int kResourceFileCount = 6;
extern const wchar_t* const kResourceExtensions[kResourceFileCount];

}  // namespace l10n
}  // namespace ulogui
