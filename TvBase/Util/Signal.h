#pragma once

// Typed events. A `Signal` calls its connected slots in the order they were connected; a slot
// bound to a `Trackable` target disappears when that target dies. Everything here belongs to the
// user-interface thread: there are no locks.

#include <boost/bind/bind.hpp>
#include <boost/function.hpp>
#include <boost/signals2/dummy_mutex.hpp>
#include <boost/signals2/last_value.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/signals2/trackable.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

/// A handle on one link between a signal and a slot. Copies refer to the same link. Destroying a
/// `Connection` leaves the slot connected: only `Disconnect` breaks the link early.
class Connection
{
public:
    Connection() = default;
    explicit Connection(boost::signals2::connection const& c) : link(c) {}

    /// Breaks the link; the slot is not called again, even by an emission in progress. Harmless
    /// on a link that is already broken or on a default-constructed handle.
    void Disconnect() const { link.disconnect(); }
    bool IsConnected() const { return link.connected(); }

private:
    boost::signals2::connection link;
};

/// Base of every object that slots may target. A slot that has a `Trackable` among its bound
/// arguments is disconnected when that object dies, so a signal never calls into a dead target.
/// The disconnection happens in this base's destructor, after derived destructors have run.
class Trackable : public boost::signals2::trackable
{
public:
    // Call-through helpers of the function-object form of `Signal::Connect`: binding `tracked`
    // next to the function lets the slot library see it and tie the slot to its life.
    static void tv_trackable_do_function_slot_0(Trackable const*, boost::function<void()> const& f)
    {
        f();
    }
    template <typename A1>
    static void tv_trackable_do_function_slot_1(Trackable const*,
                                                boost::function<void(A1)> const& f, A1 a1)
    {
        f(a1);
    }
    template <typename A1, typename A2>
    static void tv_trackable_do_function_slot_2(Trackable const*,
                                                boost::function<void(A1, A2)> const& f, A1 a1,
                                                A2 a2)
    {
        f(a1, a2);
    }
    template <typename A1, typename A2, typename A3>
    static void tv_trackable_do_function_slot_3(Trackable const*,
                                                boost::function<void(A1, A2, A3)> const& f, A1 a1,
                                                A2 a2, A3 a3)
    {
        f(a1, a2, a3);
    }
    template <typename A1, typename A2, typename A3, typename A4>
    static void tv_trackable_do_function_slot_4(Trackable const*,
                                                boost::function<void(A1, A2, A3, A4)> const& f,
                                                A1 a1, A2 a2, A3 a3, A4 a4)
    {
        f(a1, a2, a3, a4);
    }
    template <typename A1, typename A2, typename A3, typename A4, typename A5>
    static void tv_trackable_do_function_slot_5(Trackable const*,
                                                boost::function<void(A1, A2, A3, A4, A5)> const& f,
                                                A1 a1, A2 a2, A3 a3, A4 a4, A5 a5)
    {
        f(a1, a2, a3, a4, a5);
    }
    template <typename A1, typename A2, typename A3, typename A4, typename A5, typename A6>
    static void
    tv_trackable_do_function_slot_6(Trackable const*,
                                    boost::function<void(A1, A2, A3, A4, A5, A6)> const& f, A1 a1,
                                    A2 a2, A3 a3, A4 a4, A5 a5, A6 a6)
    {
        f(a1, a2, a3, a4, a5, a6);
    }
    template <typename A1, typename A2, typename A3, typename A4, typename A5, typename A6,
              typename A7>
    static void
    tv_trackable_do_function_slot_7(Trackable const*,
                                    boost::function<void(A1, A2, A3, A4, A5, A6, A7)> const& f,
                                    A1 a1, A2 a2, A3 a3, A4 a4, A5 a5, A6 a6, A7 a7)
    {
        f(a1, a2, a3, a4, a5, a6, a7);
    }
};

template <typename A1, typename A2, typename A3, typename A4, typename A5, typename A6, typename A7,
          typename A8>
class Signal;

namespace tv_signal_detail
{

/// Marks the last template position of `Signal`, which never carries an argument.
struct SignalArgUnused
{
};

template <typename... T>
struct TypeList
{
};

/// The argument types of a signal: its template positions up to the first `void`.
template <typename Done, typename... Rest>
struct UsedArgs;
template <typename... Done>
struct UsedArgs<TypeList<Done...>>
{
    typedef TypeList<Done...> type;
};
template <typename... Done, typename... Rest>
struct UsedArgs<TypeList<Done...>, void, Rest...>
{
    static_assert((std::is_void<Rest>::value && ...),
                  "Signal arguments follow one another: no argument after a void position");
    typedef TypeList<Done...> type;
};
template <typename... Done, typename Next, typename... Rest>
struct UsedArgs<TypeList<Done...>, Next, Rest...>
{
    typedef typename UsedArgs<TypeList<Done..., Next>, Rest...>::type type;
};

/// The `Trackable::tv_trackable_do_function_slot_N` that matches an argument list.
template <typename... A>
struct FunctionSlot;
template <>
struct FunctionSlot<>
{
    static constexpr auto Get() { return &Trackable::tv_trackable_do_function_slot_0; }
};
template <typename A1>
struct FunctionSlot<A1>
{
    static constexpr auto Get() { return &Trackable::tv_trackable_do_function_slot_1<A1>; }
};
template <typename A1, typename A2>
struct FunctionSlot<A1, A2>
{
    static constexpr auto Get() { return &Trackable::tv_trackable_do_function_slot_2<A1, A2>; }
};
template <typename A1, typename A2, typename A3>
struct FunctionSlot<A1, A2, A3>
{
    static constexpr auto Get() { return &Trackable::tv_trackable_do_function_slot_3<A1, A2, A3>; }
};
template <typename A1, typename A2, typename A3, typename A4>
struct FunctionSlot<A1, A2, A3, A4>
{
    static constexpr auto Get()
    {
        return &Trackable::tv_trackable_do_function_slot_4<A1, A2, A3, A4>;
    }
};
template <typename A1, typename A2, typename A3, typename A4, typename A5>
struct FunctionSlot<A1, A2, A3, A4, A5>
{
    static constexpr auto Get()
    {
        return &Trackable::tv_trackable_do_function_slot_5<A1, A2, A3, A4, A5>;
    }
};
template <typename A1, typename A2, typename A3, typename A4, typename A5, typename A6>
struct FunctionSlot<A1, A2, A3, A4, A5, A6>
{
    static constexpr auto Get()
    {
        return &Trackable::tv_trackable_do_function_slot_6<A1, A2, A3, A4, A5, A6>;
    }
};
template <typename A1, typename A2, typename A3, typename A4, typename A5, typename A6, typename A7>
struct FunctionSlot<A1, A2, A3, A4, A5, A6, A7>
{
    static constexpr auto Get()
    {
        return &Trackable::tv_trackable_do_function_slot_7<A1, A2, A3, A4, A5, A6, A7>;
    }
};

template <typename List>
class SignalImpl;

/// The whole of a signal for one argument list; `Signal` only names the list.
template <typename... Args>
class SignalImpl<TypeList<Args...>>
{
public:
    typedef boost::signals2::signal<
        void(Args...), boost::signals2::last_value<void>, int, std::less<int>,
        boost::function<void(Args...)>,
        boost::function<void(boost::signals2::connection const&, Args...)>,
        boost::signals2::dummy_mutex>
        BoostSignal;

    SignalImpl() = default;
    SignalImpl(SignalImpl const&) = delete;
    SignalImpl& operator=(SignalImpl const&) = delete;

    /// Calls every connected slot, earliest connected first, on this thread, before returning.
    /// A slot connected meanwhile waits for the next emission; a slot disconnected meanwhile
    /// (its target destroyed included) is not called. An exception from a slot passes out to
    /// the caller, and the later slots are skipped.
    void operator()(Args... args) const
    {
        if (signal)
            (*signal)(args...);
    }

    /// A member function of `target`, called with the signal's arguments; or, when it takes no
    /// arguments, called with none (the signal's arguments are dropped). When `U` derives from
    /// `Trackable`, the slot dies with `target`; otherwise disconnect it by hand.
    template <typename T, typename U, typename... P,
              typename = std::enable_if_t<sizeof...(P) == sizeof...(Args) || sizeof...(P) == 0>>
    Connection Connect(void (T::*method)(P...), U* target)
    {
        return connectMember(method, target, std::index_sequence_for<P...>());
    }

    /// As above, for a const member function.
    template <typename T, typename U, typename... P,
              typename = std::enable_if_t<sizeof...(P) == sizeof...(Args) || sizeof...(P) == 0>>
    Connection Connect(void (T::*method)(P...) const, U* target)
    {
        return connectMember(method, target, std::index_sequence_for<P...>());
    }

    /// A member function of `target` with one argument fixed now: each emission calls
    /// `method(value)`. `value` is converted to `B` once, here, and kept by value.
    template <typename T, typename U, typename B, typename V>
    Connection Connect(void (T::*method)(B), U* target, V const& value)
    {
        return connect(boost::bind(method, target, std::decay_t<B>(value)));
    }

    /// As above, with two arguments fixed now.
    template <typename T, typename U, typename B1, typename B2, typename V1, typename V2>
    Connection Connect(void (T::*method)(B1, B2), U* target, V1 const& value1, V2 const& value2)
    {
        return connect(
            boost::bind(method, target, std::decay_t<B1>(value1), std::decay_t<B2>(value2)));
    }

    /// Any function object, tied to the life of `tracked`: the slot dies with it. A null
    /// `tracked` ties it to nothing.
    Connection Connect(Trackable const* tracked, boost::function<void(Args...)> function)
    {
        return connectFunction(tracked, function, std::index_sequence_for<Args...>());
    }

    /// Chains a signal with the same arguments: each emission of this one emits `other`. The
    /// link dies with `other`.
    template <typename... B>
    Connection Connect(Signal<B...>& other)
    {
        static_assert(std::is_same<typename Signal<B...>::BoostSignal, BoostSignal>::value,
                      "a chained signal takes the same arguments");
        return Connection(boostSignal().connect(static_cast<SignalImpl&>(other).boostSignal()));
    }

    /// Chains a signal of one argument with that argument fixed now (converted once, here).
    /// The link dies with `other`.
    template <typename B, typename... Rest, typename V>
    Connection Connect(Signal<B, Rest...>& other, V const& value)
    {
        typedef typename Signal<B, Rest...>::BoostSignal OtherSignal;
        OtherSignal& target = static_cast<typename Signal<B, Rest...>::Base&>(other).boostSignal();
        return connect(boost::bind(boost::ref(target), std::decay_t<B>(value)));
    }

    /// True when no slot is connected.
    bool IsEmpty() const { return !signal || signal->empty(); }
    /// The number of connected slots.
    std::size_t GetSlotCount() const { return signal ? signal->num_slots() : 0; }
    /// Disconnects every slot.
    void DisconnectAll()
    {
        if (signal)
            signal->disconnect_all_slots();
    }

private:
    template <typename List>
    friend class SignalImpl;

    template <typename F>
    Connection connect(F const& f)
    {
        return Connection(boostSignal().connect(f, boost::signals2::at_back));
    }

    /// The slot list, made at the first connection: most signals of most windows never get one,
    /// and an empty list still costs hundreds of bytes.
    BoostSignal& boostSignal() const
    {
        if (!signal)
            signal.reset(new BoostSignal);
        return *signal;
    }

    template <typename M, typename U, std::size_t... I>
    Connection connectMember(M method, U* target, std::index_sequence<I...>)
    {
        return connect(boost::bind(method, target, boost::arg<I + 1>()...));
    }

    template <std::size_t... I>
    Connection connectFunction(Trackable const* tracked,
                               boost::function<void(Args...)> const& function,
                               std::index_sequence<I...>)
    {
        return connect(
            boost::bind(FunctionSlot<Args...>::Get(), tracked, function, boost::arg<I + 1>()...));
    }

    mutable std::unique_ptr<BoostSignal> signal;
};

} // namespace tv_signal_detail

/// A typed event with up to seven arguments; unused positions are `void`, so `Signal<>` and
/// `Signal<void>` take none. Slots return nothing. Not copyable. Every `Connect` form appends the
/// slot after those already connected. See `tv_signal_detail::SignalImpl` for the forms.
template <typename A1 = void, typename A2 = void, typename A3 = void, typename A4 = void,
          typename A5 = void, typename A6 = void, typename A7 = void,
          typename A8 = tv_signal_detail::SignalArgUnused>
class Signal : public tv_signal_detail::SignalImpl<typename tv_signal_detail::UsedArgs<
                   tv_signal_detail::TypeList<>, A1, A2, A3, A4, A5, A6, A7>::type>
{
    static_assert(std::is_same<A8, tv_signal_detail::SignalArgUnused>::value,
                  "the last position of a Signal is never an argument");

public:
    typedef tv_signal_detail::SignalImpl<typename tv_signal_detail::UsedArgs<
        tv_signal_detail::TypeList<>, A1, A2, A3, A4, A5, A6, A7>::type>
        Base;
    using Base::Connect;
    using typename Base::BoostSignal;
};
