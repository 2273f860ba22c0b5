// Words that two threads, or two processes, touch: each is read and written as one, and what was
// written before it is seen by who reads it. The records that they lie in keep their layout.
#ifndef RUK_RUNTIME_WORDS_H
#define RUK_RUNTIME_WORDS_H

namespace ruk
{

template <typename Word>
Word load(const Word &word)
{
    return __atomic_load_n(&word, __ATOMIC_ACQUIRE);
}

template <typename Word>
void store(Word &word, Word value)
{
    __atomic_store_n(&word, value, __ATOMIC_RELEASE);
}

// Stores `desired` if the word still is `expected`; what it was.
template <typename Word>
Word replace(Word &word, Word expected, Word desired)
{
    __atomic_compare_exchange_n(&word, &expected, desired, false, __ATOMIC_ACQ_REL,
                                __ATOMIC_ACQUIRE);
    return expected;
}

// Adds 1; the sum.
template <typename Word>
Word increase(Word &word)
{
    return __atomic_add_fetch(&word, Word{1}, __ATOMIC_RELAXED);
}

// What stands before this is stored before what stands behind it, for whoever finds what a process
// left that was killed in between.
inline void in_this_order()
{
    __atomic_signal_fence(__ATOMIC_SEQ_CST);
}

} // namespace ruk

#endif
