# Languages, resource discovery and the overflowing-text log.
ulogui_family(ulogui_l10n
  LanguageManager.cpp
  LanguageManagerXml.cpp
  OverflowLog.cpp
  resourcefilediscover/ResourceFile.cpp
  resourcefilediscover/ResourceFileDiscover.cpp
  resourcefilediscover/ResourceDirDiscover.cpp
)
