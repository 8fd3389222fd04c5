#include "platform/FontEngine.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace ulogui {
namespace platform {

PlatformFont::~PlatformFont() = default;

int32_t PlatformFont::GetKerningAmount(uint32_t first, uint32_t second) const {
    for (const KerningPair& pair : GetKerningPairs()) {
        if (pair.first == first && pair.second == second) {
            return pair.amount;
        }
    }
    return 0;
}
void PlatformFont::GetGlyphImages(const uint32_t* codePoints, size_t count, GlyphImagePtr* out) const {
    for (size_t i = 0; i < count; ++i) {
        auto image = std::make_shared<GlyphImage>();
        GetCharAdvances(codePoints[i], codePoints[i], &image->advance);
        out[i] = std::move(image);
    }
}

bool PlatformFont::RenderGlyphWindow(uint32_t, const ULORect&, std::vector<uint8_t>& levels) const {
    levels.clear();
    return false;
}

FontEngine::~FontEngine() = default;

namespace {

struct EngineSlot {
    std::mutex mutex;
    std::shared_ptr<FontEngine> engine;
};

EngineSlot& Slot() {
    static EngineSlot* slot = new EngineSlot;  // never destroyed: fonts may outlive static destruction
    return *slot;
}

struct HandleTable {
    std::mutex mutex;
    std::unordered_map<PlatformFont*, std::shared_ptr<PlatformFont>> live;
    std::unordered_map<Device*, HFONT> selected;
};

HandleTable& Handles() {
    static HandleTable* table = new HandleTable;
    return *table;
}

}  // namespace

std::shared_ptr<FontEngine> GetFontEngine() {
    EngineSlot& slot = Slot();
    std::lock_guard<std::mutex> lock(slot.mutex);
    if (!slot.engine) {
        slot.engine = CreateDefaultFontEngine();
    }
    return slot.engine;
}

void SetFontEngine(std::shared_ptr<FontEngine> engine) {
    EngineSlot& slot = Slot();
    std::lock_guard<std::mutex> lock(slot.mutex);
    slot.engine = std::move(engine);
}

HFONT CreateFontHandle(const FontRequest& request) {
    std::shared_ptr<PlatformFont> font = GetFontEngine()->CreateFontObject(request);
    if (!font) {
        return nullptr;
    }
    HandleTable& table = Handles();
    std::lock_guard<std::mutex> lock(table.mutex);
    HFONT handle = font.get();
    table.live[handle] = std::move(font);
    return handle;
}

bool DeleteFontHandle(HFONT font) {
    if (!font) {
        return false;
    }
    std::shared_ptr<PlatformFont> doomed;  // released outside the lock
    HandleTable& table = Handles();
    std::lock_guard<std::mutex> lock(table.mutex);
    auto it = table.live.find(font);
    if (it == table.live.end()) {
        return false;
    }
    doomed = std::move(it->second);
    table.live.erase(it);
    return true;
}

std::shared_ptr<PlatformFont> ResolveFont(HFONT font) {
    if (!font) {
        return nullptr;
    }
    HandleTable& table = Handles();
    std::lock_guard<std::mutex> lock(table.mutex);
    auto it = table.live.find(font);
    return it == table.live.end() ? nullptr : it->second;
}

HFONT SelectFont(HDC dc, HFONT font) {
    HandleTable& table = Handles();
    std::lock_guard<std::mutex> lock(table.mutex);
    HFONT previous = nullptr;
    auto it = table.selected.find(dc);
    if (it != table.selected.end()) {
        previous = it->second;
        if (font) {
            it->second = font;
        } else {
            table.selected.erase(it);
        }
    } else if (font) {
        table.selected.emplace(dc, font);
    }
    return previous;
}

HFONT GetSelectedFont(HDC dc) {
    HandleTable& table = Handles();
    std::lock_guard<std::mutex> lock(table.mutex);
    auto it = table.selected.find(dc);
    return it == table.selected.end() ? nullptr : it->second;
}

bool GetCharAdvances(HDC dc, uint32_t first, uint32_t last, int32_t* widths) {
    if (last < first) {
        return false;
    }
    std::shared_ptr<PlatformFont> font = ResolveFont(GetSelectedFont(dc));
    if (!font) {
        std::fill(widths, widths + (last - first) + 1, 0);
        return false;
    }
    font->GetCharAdvances(first, last, widths);
    return true;
}

}  // namespace platform
}  // namespace ulogui
