// The door works without this, which only says it in the person's language and opens where nothing is missing any more.
import {translatePage} from './texts.js';

translatePage();

// A link on another site gets its cookie, but does not send it on to the page at once.
const {ok} = await fetch('/admitted', {cache: 'no-store'});
if (ok) location.replace('/');
