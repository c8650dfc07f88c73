#pragma once

/// Where the memory of pictures comes from.
namespace pictureMemory {

/// Has pictures kept apart from other memory. Pictures of plots come and go: small pieces that are
/// allocated between them would keep their memory from the system, and the panel would grow for
/// hours; apart, it is given back at once. To be called once, before anything else.
void keepApart();

} // namespace pictureMemory
