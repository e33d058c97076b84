// The tour in JavaScript: the same program stands here in C++, C and Python, and prints the same.
// Run it with QUORL_LIBRARY set to the folder of the libraries, unless they are installed.
import { Currency, Quorl, QuorlError } from "../../node/index.js";

// ------------------------------------------------------------------- objects of the host's own

class Combo {
  List = ["Anvers 2000", "Bruxelles 1000", "Namur 5000"];
  ListIndex = -1;

  get ListCount() {
    return this.List.length;
  }

  ItemData(index) {
    return 100 + index;
  }
}

class ClosedCombo {
  get ListCount() {
    throw new QuorlError(1004, "Combo", "La liste est fermée.");
  }
}

class Form {
  Name = "Orders";
  BorderStyle = 2;
  MDIChild = false;
  WindowState = 0;
  Left = 0;
  Top = 0;
  Width = 400;
  Height = 300;

  Move(...place) {
    ["Left", "Top", "Width", "Height"].slice(0, place.length)
      .forEach((length, i) => { this[length] = place[i]; });
  }
}

// ---------------------------------------------------------------------------------- the tour

function writeAnAmount(library) {
  const amount = new library.Money();
  amount.Unit = "euro";
  amount.Units = "euros";
  amount.SubUnit = "cent";
  amount.SubUnits = "cents";
  amount.SubUnitRow = 2;
  amount.Language = "FR";
  console.log(`amount in words: ${amount.ToText(new Currency("1280.21"))}`);
}

function roundAndSplit({ Math, Strings }) {
  console.log(`1.21 rounded up: ${Math.RoundSup(1.21, 1)}`);
  console.log(`second token: ${Strings.GetToken("un deux trois", " ", 2)}`);
}

function keepSettings(settings) {
  settings.SaveValue("Ticket", "Copies", 2);
  console.log(`copies: ${settings.GetValue("Ticket", "Copies", 1)}`);
  console.log(`font: ${settings.GetValue("Ticket", "Font", "none yet")}`);
}

function lendACombo({ ComboBoxEx }) {
  const combo = new Combo();
  ComboBoxEx.CmbSelectMatchToken(combo, "1000", 2);
  const data = ComboBoxEx.CmbCurrentItemData(combo, 0);
  console.log(`combo: entry ${combo.ListIndex}, data ${data}`);
}

function lendAForm({ Forms }, settings) {
  const form = new Form();
  Forms.InitFormSettings(form, undefined, 800, 600);
  Forms.SaveFormSettings(settings, form);
  form.Left = 0;
  Forms.GetFormSettings(settings, form);
  console.log(`form: ${form.Left}, ${form.Top}, ${form.Width} by ${form.Height}`);
}

function showFailure(action) {
  try {
    action();
  } catch (error) {
    if (!(error instanceof QuorlError)) throw error;
    console.log(`failure ${error.number} of ${error.source}: ${error.description}`);
  }
}

// Settings in memory: the tour leaves nothing behind.
const library = new Quorl({ inMemory: true, locale: "fr-BE", screen: [1800, 1600] });
const settings = new library.Registry();
settings.InitApp("Maison", "Caisse");

writeAnAmount(library);
roundAndSplit(library);
keepSettings(settings);
lendACombo(library);
lendAForm(library, settings);
showFailure(() => library.Math.RoundSup(1.21, -1));
showFailure(() => library.ComboBoxEx.CmbSelectItemData(new ClosedCombo(), 1));
