"""The tour in Python: the same program stands here in C++, C and JavaScript, and prints the same.

    QUORL_LIBRARY=build/run python3 examples/tours/tour.py
"""

from decimal import Decimal

import quorl

# --------------------------------------------------------------- objects of the host's own


class Combo:
    def __init__(self):
        self.List = ["Anvers 2000", "Bruxelles 1000", "Namur 5000"]
        self.ListIndex = -1

    @property
    def ListCount(self):
        return len(self.List)

    def ItemData(self, index):
        return 100 + index


class ClosedCombo:
    @property
    def ListCount(self):
        raise quorl.QuorlError(1004, "Combo", "La liste est fermée.")


class Form:
    Name, BorderStyle, MDIChild, WindowState = "Orders", 2, False, 0
    Left, Top, Width, Height = 0.0, 0.0, 400.0, 300.0

    def Move(self, left, top, width, height):
        self.Left, self.Top, self.Width, self.Height = left, top, width, height


# ------------------------------------------------------------------------------- the tour


def write_an_amount(library):
    money = library.Money()
    money.Unit, money.Units, money.SubUnit, money.SubUnits = "euro", "euros", "cent", "cents"
    money.SubUnitRow, money.Language = 2, "FR"
    print("amount in words:", money.ToText(Decimal("1280.21")))


def keep_settings(settings):
    settings.SaveValue("Ticket", "Copies", 2)
    print("copies:", settings.GetValue("Ticket", "Copies", 1))
    print("font:", settings.GetValue("Ticket", "Font", "none yet"))


def lend_a_combo(library):
    combo = Combo()
    library.ComboBoxEx.CmbSelectMatchToken(combo, "1000", 2)
    data = library.ComboBoxEx.CmbCurrentItemData(combo, 0)
    print(f"combo: entry {combo.ListIndex}, data {data}")


def lend_a_form(library, settings):
    form = Form()
    library.Forms.InitFormSettings(form, Width=800, Height=600)
    library.Forms.SaveFormSettings(settings, form)
    form.Left = 0.0
    library.Forms.GetFormSettings(settings, form)
    print(f"form: {form.Left:g}, {form.Top:g}, {form.Width:g} by {form.Height:g}")


def show_failure(action, *arguments):
    try:
        action(*arguments)
    except quorl.QuorlError as error:
        print(f"failure {error.number} of {error.source}: {error.description}")


def main():
    # Settings in memory: the tour leaves nothing behind.
    library = quorl.Quorl(in_memory=True, locale="fr-BE", screen=(1800, 1600))
    settings = library.Registry()
    settings.InitApp("Maison", "Caisse")

    write_an_amount(library)
    print("1.21 rounded up:", library.Math.RoundSup(1.21, 1))
    print("second token:", library.Strings.GetToken("un deux trois", Index=2))
    keep_settings(settings)
    lend_a_combo(library)
    lend_a_form(library, settings)
    show_failure(library.Math.RoundSup, 1.21, -1)
    show_failure(library.ComboBoxEx.CmbSelectItemData, ClosedCombo(), 1)


if __name__ == "__main__":
    main()
