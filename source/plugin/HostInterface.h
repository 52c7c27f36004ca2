#pragma once
// The host's calling convention, kept name for name and argument for
// argument: (text, number, block 1, size 1, block 2, size 2, host block),
// returning a float the host reads as 1.0 for success.

#include "dialog/HostLink.h"

extern "C" {

using HostEntryPoint = float (*)(char* text, double number, char* block1, int size1,
                                 char* block2, int size2, void* hostBlock);

// The host's live-update function, the one the dialog's pages send to.
using HostCallback = gritwell::HostLink::Callback;

// The host block is an array of pointer-sized words; this one holds the callback.
constexpr int kHostCallbackWord = 7;

// Opens a session: block 1 holds the state record, block 2 the transform
// record (only its flags word is read).
float beginSession(char* text, double number, char* block1, int size1, char* block2, int size2,
                   void* hostBlock);
// Evaluates a batch: block 2 holds an int count n and n points (x, y, z
// floats); block 1 receives n floats.
float continueSession(char* text, double number, char* block1, int size1, char* block2,
                      int size2, void* hostBlock);
// Evaluates the point of three floats at `text` and returns its value.
float continueSessionOne(char* text, double number, char* block1, int size1, char* block2,
                         int size2, void* hostBlock);
// Closes the session.
float endSession(char* text, double number, char* block1, int size1, char* block2, int size2,
                 void* hostBlock);

// Runs the generator dialog modally. Block 1 is the host's 256-byte
// state-record buffer, block 2 the 44-byte transform record; word 7 of the
// host block is its HostCallback. On OK the chosen generator's record (as
// many bytes as its size byte says) is written into block 1; on Cancel block
// 1 is left as it was. Block 2 receives the transforms either way.
float interactWithUser(char* text, double number, char* block1, int size1, char* block2, int size2,
                       void* hostBlock);

// Set once the application has been asked to quit while a dialog ran.
extern bool appKilled;
// The host's callback, taken from the host block at the start of every
// dialog and handed to the dialog's HostLink at the same moment.
extern HostCallback DLL2KelmarCallBack;
}

// Not the host's: a command-line host of ours (`gritwell --simd`, the
// benchmark table) defines and exports an int of this name holding the
// SimdLevel the plug-in's sessions are to run, or -1 for none. A host
// application never defines it, and the plug-in runs the best level the
// processor has.
constexpr const char* kRequestedSimdLevelName = "gritwellRequestedSimdLevel";
