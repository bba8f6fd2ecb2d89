// The database's own writes, syncs and deletions, announced to the hook of the file layer.
#pragma once

namespace host::store {

// Name of an SQLite VFS that does what the default one does, step by step through files::before().
// It offers neither shared memory nor mapped files: a part is never read or written that way.
const char *steppingVfs();

} // namespace host::store
