// A short host in TypeScript: what the declarations must allow, and what they must refuse.
import {
  ByRef, Currency, Empty, HKEY_CURRENT_USER, Quorl, QuorlError, RegTypeEnum, defaultMember, named,
} from "quorl";

const library = new Quorl({ inMemory: true, locale: "fr-BE", screen: [1800, 1600] });
const rounded: number = library.Math.RoundSup(1.21, named({ Nombredecimales: 1 }));
const token: string = library.Strings.GetToken(named({ Text: "un deux", Index: 2 }));

using money = new library.Money();
money.Language = "FR";
const words: string = money.ToText(new Currency("1280.21"));

const settings = library.create("Registry");
settings.InitAbsolute(HKEY_CURRENT_USER, "Software");
settings.SaveValue("Ticket", "Copies", 2, RegTypeEnum.REG_DWORD);
const none: boolean = settings.GetValue("Ticket", "Copies", null) === Empty;

const key = new ByRef(46);
library.Regional.ConvertDecimalPoint(key);
const fields = { Count: 1, [defaultMember]: () => ({ Name: "Prix" }) };
const place: number = library.DbLib.FieldPos("Prix", fields);
library.Forms.SaveFormSettings(settings, {});
settings.close();

// @ts-expect-error an amount is no number
money.ToText(1280.21);
// @ts-expect-error a property that cannot be written
new library.RollBuffer().Count = 1;
// @ts-expect-error no member of that name
library.Math.Square(2);
// @ts-expect-error a required argument is absent
library.Math.RoundSup();
// @ts-expect-error a form is no Registry
library.Forms.SaveFormSettings({}, {});
// @ts-expect-error an argument of the wrong type
library.Strings.GetToken(named({ Text: 1 }));

export { QuorlError, none, place, rounded, token, words };
