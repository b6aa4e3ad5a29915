#ifndef ZUTARNEX_TESTS_SYSTEM_ASKINGOPERATORNEW_H
#define ZUTARNEX_TESTS_SYSTEM_ASKINGOPERATORNEW_H

namespace Quillon::Testing {

/// An operator new that asks for the system plug-in loader, as that of an application may that keeps its memory in a
/// plug-in.
struct AskingOperatorNew {
    int asksIn = 0;        ///< the calls until it asks (1: in the next one); 0: it does not
    bool letsPass = false; ///< whether a refusal leaves operator new
    int refusals = 0;
};
AskingOperatorNew& askingOperatorNew() noexcept;

} // namespace Quillon::Testing

#endif
