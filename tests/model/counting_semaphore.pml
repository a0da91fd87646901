/*
 * The protocol of platform/base/os/counting_semaphore.hpp: a step for each atomic operation and for
 * each thing that the kernel does at once, but for the sleep and the wake-up of a doze, which may
 * end at any time here. What language and kernel leave open is a choice, and the model allows more
 * than happens: a load may show what its thread has seen before, an exchange may fail for no
 * reason, a wait may report that its time has passed although a wake-up was spent on it.
 *
 * Definitions from outside:
 *   PATIENT, TIMED  takers that wait for ever and takers with a deadline, at most three together
 *   WANTED          units that each of them takes, unless it gives up
 *   GIVERS          threads of which each gives a unit or refrains, at most seven
 *   LIMIT           most units at a time, at most seven
 *   MANY            units that put an end to a doze, where that is looked at
 * and at most one of these, each of which makes a step what somebody might take for as good:
 *   GIVER_LOOKS_BEFORE          sees before it gives whether anybody waits
 *   GIVER_LOOKS_AFTERWARDS      sees it afterwards
 *   GIVER_WAKES_FOR_FIRST_UNIT  trusts that whoever added to units has woken somebody
 *   GIVER_REFUSES_BY_A_LOAD     leaves a full semaphore without an exchange
 *   DOZER_STORES                forgets the recent unit by a load and a store
 *   TAKER_LEAVES_AFTERWARDS     takes the unit and leaves the waiters in two steps
 *   TAKER_LEAVES_BLINDLY        leaves the waiters when its time has passed, units or none
 */

#define TAKERS (PATIENT + TIMED)

#define ONE_WAITER 8
#ifdef MANY
#define DOZING 64
#else
#define DOZING 0
#define MANY 8
#endif
#define RECENTLY_TAKEN 128
#define UNITS(word) ((word) & 7)
#define WAITERS(word) (((word) & 63) >> 3)

/* The word, laid out like the real one. */
byte state;
bool freed;
#define TOUCH assert(!freed)

/* The kernel's queue. */
bool asleep[3];
#define ANYBODY_ASLEEP (asleep[0] || asleep[1] || asleep[2])
/* A sleeper may wake for no reason, but not so often that this makes up for a missing wake-up. */
bool idle_wakeup;

/* What the word has to agree with. */
byte given;
byte taken;
byte waiting;
byte busy = TAKERS;

inline changed() {
    assert(UNITS(state) == given - taken);
    assert(WAITERS(state) == waiting)
}

/* Nobody need wait for the return of a call whose effect has shown. */
inline end_call() {
    busy--;
    freed = (busy == 0 && taken == GIVERS)
}

inline load() {
    atomic {
        TOUCH;
        if
        :: seen = state
        :: skip
        fi
    }
}

/* Who does not wait takes any number of those that are there. */
inline take_units(waiters) {
    done = false;
    do
    :: !done && UNITS(seen) > 0 ->
        atomic {
            TOUCH;
            if
            :: state == seen ->
                mark = RECENTLY_TAKEN;
                if
                :: waiters > 0 -> mark = 0
                :: skip
                fi;
                number = 1;
                do
                :: waiters == 0 && number < UNITS(seen) && number < wanted -> number++
                :: break
                od;
                state = ((seen - waiters * ONE_WAITER - number) | mark) & (255 - DOZING);
                waiting = waiting - waiters;
                taken = taken + number;
                changed();
                done = true;
                wanted = wanted - number;
                if
                :: wanted == 0 -> end_call()
                :: else
                fi
            :: seen = state
            fi
        }
    :: else -> break
    od
}

/* The unit that is there stands for the one that is refused, so it must be there at a time when
   what the giver has written is to be seen. */
inline refuse() {
    assert(UNITS(state) >= LIMIT)
}

inline wake_one() {
    atomic {
        if
        :: asleep[0] -> asleep[0] = false
        :: asleep[1] -> asleep[1] = false
        :: asleep[2] -> asleep[2] = false
        :: else
        fi
    }
}

proctype giver() {
    byte seen = state;
    bool wakes = false;

    if
    :: goto refrained
    :: load()
    fi;
#ifdef GIVER_LOOKS_BEFORE
    wakes = WAITERS(seen) > 0;
#endif
again:
#ifdef GIVER_REFUSES_BY_A_LOAD
    /* Later than the load, as writes may be seen. */
    if
    :: UNITS(seen) >= LIMIT -> refuse(); goto refrained
    :: else
    fi;
#endif
    atomic {
        TOUCH;
        if
        :: state == seen && UNITS(seen) < LIMIT ->
            state++;
            given++;
            changed();
            if
            :: UNITS(state) >= MANY -> state = state & (255 - DOZING)
            :: else
            fi
        :: state == seen && UNITS(seen) >= LIMIT ->
            refuse();
            goto refrained
        :: seen = state; goto again
        fi
    };
#ifdef GIVER_LOOKS_AFTERWARDS
    load();
    wakes = WAITERS(seen) > 0;
#elif !defined(GIVER_LOOKS_BEFORE)
    wakes = WAITERS(seen) > UNITS(seen);
#endif
#ifdef GIVER_WAKES_FOR_FIRST_UNIT
    wakes = wakes && UNITS(seen) == 0;
#endif
    if
    :: wakes -> wake_one()
    :: else
    fi;
refrained:
    skip
}

proctype taker(byte me; bool timed) {
    byte seen = state;
    byte wanted = WANTED;
    byte mark;
    byte number;
    bool done;
    bool in_time;

try_take:
    load();
    take_units(0);
    if
    :: done -> goto returned
    :: else
    fi;

    /* doze_and_take */
    load();
    if
    :: !(seen & RECENTLY_TAKEN) -> goto wait
    :: else
    fi;
    do
    :: atomic { TOUCH; state = state | DOZING };
        /* Asleep for any time: givers need not wake it. */
        load();
        take_units(0);
        if
        :: done -> goto returned
        :: else
        fi
    :: timed -> atomic { TOUCH; state = state & (255 - DOZING) }; goto wait
    :: break
    od;
#ifdef DOZER_STORES
    load();
    atomic { TOUCH; state = seen & 63; changed() };
#else
    atomic { TOUCH; state = state & 63; changed() };
#endif

wait:
    atomic { TOUCH; state = state + ONE_WAITER; waiting++; changed(); seen = state };
    in_time = true;
    do
    ::
#ifdef TAKER_LEAVES_AFTERWARDS
        take_units(0);
        if
        :: done -> atomic { TOUCH; state = state - ONE_WAITER; waiting--; changed() }
        :: else
        fi;
#elif defined(TAKER_LEAVES_BLINDLY)
        if
        :: in_time -> take_units(1)
        :: else -> done = false; seen = state
        fi;
#else
        take_units(1);
#endif
        if
        :: done -> break
        :: !done && in_time ->
            atomic { TOUCH; asleep[me] = (UNITS(state) == 0) };
end_asleep:
            if
            :: !asleep[me]
            :: !asleep[me] && timed -> in_time = false
            :: atomic { asleep[me] && timed -> asleep[me] = false; in_time = false }
            :: atomic { asleep[me] && idle_wakeup -> asleep[me] = false; idle_wakeup = false }
            fi;
            load()
        :: !done && !in_time ->
            atomic {
                TOUCH;
                if
                :: state == seen ->
                    state = state - ONE_WAITER;
                    waiting--;
                    changed();
                    if
                    :: goto try_take
                    :: end_call(); goto gave_up
                    fi
                :: seen = state
                fi
            }
        fi
    od;

returned:
    if
    :: wanted > 0 -> goto try_take
    :: else
    fi;
gave_up:
    skip
}

/* When nothing moves any more, no wake-up is on its way either. */
proctype afterwards() {
    timeout -> assert(!(ANYBODY_ASLEEP && UNITS(state) > 0))
}

init {
    byte number;
    atomic {
        if
        :: state = RECENTLY_TAKEN
        :: skip
        fi;
        if
        :: idle_wakeup = true
        :: skip
        fi;
        for (number : 1 .. GIVERS) {
            run giver()
        }
        for (number : 0 .. TAKERS - 1) {
            run taker(number, number >= PATIENT)
        }
        run afterwards()
    }
}
