// What the page says, in the person's language.

const TEXTS = {
    en: {
        connecting: 'Connecting…',
        ended: 'Colour has ended.\nThis page comes back when it starts again.',
        full: 'Too many pages show this panel.\nThis one follows when another is closed.',
        drawing: 'Somebody else is drawing.',
        door: 'Open the address that Colour printed when it started.',
        password: 'Password',
        enter: 'Enter',
        wrong: 'Wrong password',
        menu: 'Menu',
        keyboard: 'Keyboard',
        fullScreen: 'Full screen',
        download: 'Save as PNG',
    },
    de: {
        connecting: 'Verbindung wird hergestellt …',
        ended: 'Colour ist beendet.\nDiese Seite kommt wieder, wenn es neu startet.',
        full: 'Zu viele Seiten zeigen dieses Blatt.\nDiese folgt, sobald eine andere geschlossen wird.',
        drawing: 'Jemand anders zeichnet gerade.',
        door: 'Öffnen Sie die Adresse, die Colour beim Start ausgegeben hat.',
        password: 'Passwort',
        enter: 'Eintreten',
        wrong: 'Falsches Passwort',
        menu: 'Menü',
        keyboard: 'Tastatur',
        fullScreen: 'Vollbild',
        download: 'Als PNG speichern',
    },
    fr: {
        connecting: 'Connexion…',
        ended: 'Colour est arrêté.\nCette page revient quand il redémarre.',
        full: 'Trop de pages montrent cette feuille.\nCelle-ci suivra quand une autre sera fermée.',
        drawing: 'Quelqu’un d’autre dessine.',
        door: 'Ouvrez l’adresse que Colour a affichée au démarrage.',
        password: 'Mot de passe',
        enter: 'Entrer',
        wrong: 'Mot de passe incorrect',
        menu: 'Menu',
        keyboard: 'Clavier',
        fullScreen: 'Plein écran',
        download: 'Enregistrer en PNG',
    },
    es: {
        connecting: 'Conectando…',
        ended: 'Colour ha terminado.\nEsta página volverá cuando se inicie de nuevo.',
        full: 'Demasiadas páginas muestran esta hoja.\nEsta seguirá cuando se cierre otra.',
        drawing: 'Otra persona está dibujando.',
        door: 'Abra la dirección que Colour mostró al iniciarse.',
        password: 'Contraseña',
        enter: 'Entrar',
        wrong: 'Contraseña incorrecta',
        menu: 'Menú',
        keyboard: 'Teclado',
        fullScreen: 'Pantalla completa',
        download: 'Guardar como PNG',
    },
    ru: {
        connecting: 'Подключение…',
        ended: 'Программа Colour завершена.\nЭта страница вернётся, когда она запустится снова.',
        full: 'Слишком много страниц показывают этот лист.\nЭта откроется, когда закроется другая.',
        drawing: 'Сейчас рисует кто-то другой.',
        door: 'Откройте адрес, который Colour вывел при запуске.',
        password: 'Пароль',
        enter: 'Войти',
        wrong: 'Неверный пароль',
        menu: 'Меню',
        keyboard: 'Клавиатура',
        fullScreen: 'Во весь экран',
        download: 'Сохранить как PNG',
    },
    ar: {
        connecting: 'جارٍ الاتصال…',
        ended: 'انتهى برنامج Colour.\nستعود هذه الصفحة عندما يبدأ من جديد.',
        full: 'صفحات كثيرة تعرض هذه اللوحة.\nستظهر هنا عندما تُغلق صفحة أخرى.',
        drawing: 'شخص آخر يرسم الآن.',
        door: 'افتح العنوان الذي عرضه Colour عند بدء تشغيله.',
        password: 'كلمة المرور',
        enter: 'دخول',
        wrong: 'كلمة المرور غير صحيحة',
        menu: 'القائمة',
        keyboard: 'لوحة المفاتيح',
        fullScreen: 'ملء الشاشة',
        download: 'حفظ بصيغة PNG',
    },
};

const wanted = navigator.languages.map((tag) => tag.split('-')[0].toLowerCase());
const language = wanted.find((code) => Object.hasOwn(TEXTS, code)) ?? 'en';

export const text = (name) => TEXTS[language][name];

/** Gives each element that names its text that text: as contents, or as a picture's or an empty field's title. */
export function translatePage() {
    document.documentElement.lang = language;
    document.documentElement.dir = language === 'ar' ? 'rtl' : 'ltr';
    for (const element of document.querySelectorAll('[data-text]')) {
        const words = text(element.dataset.text);
        if (element.matches('p, button.words')) element.textContent = words;
        else if (element.matches('input')) element.placeholder = element.ariaLabel = words;
        else element.title = element.ariaLabel = words;
    }
}
