// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVDocumentFont.h"

#include <utility>

#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/font_system.h"

std::shared_ptr<const ORVFontFace> ORVOpenDocumentFont(ORVDocumentFont font) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system ? system->Open(std::move(font)) : nullptr;
}

ORVVariedDocumentFace ORVVaryDocumentFont(const ORVFontFace& face, const ORVFontQuery& query) {
    ORVFontSystem* const system = ORVGetFontSystem();
    return system ? system->Vary(face, query) : ORVVariedDocumentFace();
}
