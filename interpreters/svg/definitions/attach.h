// SPDX-License-Identifier: Apache-2.0
#pragma once

class ORVPrtGraphicPrimitiveElt;
class ORVPrtDefsElt;

/// Adds a primitive to a container: a group, page, holder of definitions, symbol, pattern or region. Other
/// containers ignore it, and it is destroyed when its creator releases it.
void AttachToContainer(ORVPrtGraphicPrimitiveElt& container, ORVPrtGraphicPrimitiveElt& primitive);

/// Casts a container to a holder of definitions; null if it is not one.
ORVPrtDefsElt* AsDefinitionHolder(ORVPrtGraphicPrimitiveElt& container);
