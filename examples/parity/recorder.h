/*
 * Records the calls that a host makes by name, in plain C11. docs/parity.md describes the log and
 * shows how it is replayed.
 *
 *     ParityRecorder* recorder = NULL;
 *     QuorlDispatch* recorded = NULL;
 *     ParityOpen("/tmp/orders.parity", "locale fr-BE\nscreen 15360 11520\n", &recorder);
 *     ParityRecord(recorder, u"Strings", strings, &recorded);
 *     ... the host uses `recorded` in place of `strings` and releases both ...
 *     ParityClose(recorder);
 *
 * A recorded object does what the object behind it does, with the same results and failures. Each
 * call is in the file before it is made, and its outcome before the host has it: the log of a
 * program that crashed ends with the call that was under way. A log that cannot be written is told
 * once, on standard error; the host goes on without.
 *
 * One recorder is for the objects of one thread; they may be released on any. A program with
 * several threads opens a recorder for each. Objects that the host lends to a recorded one are
 * recorded as well, for as long as they are lent. Two things reach the component unrecorded: calls
 * through a table, which QueryInterface gives for a class's own identifiers, and wrong calls with
 * more than 255 arguments or without an array for them.
 */
#ifndef QUORL_EXAMPLES_PARITY_RECORDER_H
#define QUORL_EXAMPLES_PARITY_RECORDER_H

#include "quorl/abi/quorl.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ParityRecorder ParityRecorder;

/* Begins a log in that file, which is for its owner alone; one that was there is replaced. `header`
 * has the log's header lines, each with its line end, as docs/parity.md lists them, and may be
 * null. E_INVALIDARG for a header that makes no sense, E_OUTOFMEMORY, E_POINTER. */
QUORL_API HRESULT ParityOpen(const char* path, const char* header, ParityRecorder** out);

/* An object in front of `object`, a counted reference in `recorded`: the same one for the same
 * object as long as the host holds it, and a recorded one is given back as it is. `class_name` is
 * the published one, "Strings". E_OUTOFMEMORY, E_POINTER. */
QUORL_API HRESULT ParityRecord(ParityRecorder* recorder, const char16_t* class_name,
                               QuorlDispatch* object, QuorlDispatch** recorded);

/* Ends the log and frees the recorder; takes null. Recorded objects that are still held work on,
 * unrecorded. */
QUORL_API void ParityClose(ParityRecorder* recorder);

#ifdef __cplusplus
}
#endif

#endif
