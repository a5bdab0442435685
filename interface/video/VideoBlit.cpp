// Blits and fills. Onto the back surface unless a target is named; clipped at both surfaces.
#include "interface/video/Video.h"

namespace vonta {

void Video::BlitOntoBack(int sourceX, int sourceY, int width, int height, int x, int y, int id, bool keyed) {
    const Surface* source = Get(id);
    if (source && back_) back_->Blit(*source, sourceX, sourceY, width, height, x, y, keyed);
}

void Video::Blit(int x, int y, int sourceId, int targetId) {
    Slot* target = Find(targetId);
    const Surface* source = Get(sourceId);
    if (!source || !target || !target->surface) return;
    target->surface->Blit(*source, 0, 0, source->Width(), source->Height(), x, y, false);
}

void Video::BlitToBack(int x, int y, int id) {
    const Slot* slot = Find(id);
    BlitOntoBack(0, 0, WidthOf(id), HeightOf(id), x, y, id, slot && slot->hasAlpha);
}

void Video::BlitPart(int x, int y, int width, int height, int id, bool transparent) {
    BlitOntoBack(0, 0, width, height, x, y, id, transparent);
}

void Video::BlitColumns(int x, int y, int sourceX, int width, int id) {
    BlitOntoBack(sourceX, 0, width, HeightOf(id), x, y, id, true);
}

void Video::BlitScaled(int x, int y, int width, int height, int id) {
    if (const Surface* source = Get(id); source && back_) back_->BlitScaled(*source, x, y, width, height);
}

void Video::BlitRect(int x, int y, int originX, int originY, int width, int height, int id, bool transparent) {
    BlitOntoBack(x - originX, y - originY, width, height, x, y, id, transparent);
}

void Video::FillBack(const Rect& rect, std::uint32_t colour) {
    if (back_) back_->Fill(rect.x, rect.y, rect.width, rect.height, colour);
}

void Video::FillSurface(int id, const Rect& rect, std::uint32_t colour) {
    if (Slot* slot = Find(id); slot && slot->surface)
        slot->surface->Fill(rect.x, rect.y, rect.width, rect.height, colour);
}

}  // namespace vonta
